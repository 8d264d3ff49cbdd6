#include <gtest/gtest.h>

#include "Core/Types/Types.h"
#include "tests/XMLBuilder/ImportSupport.h"

namespace Vantor::XML2Partition {
namespace {

using namespace Types::Identifiers;

/// Child elements by name and text.
using Fields = std::vector<std::pair<std::string, std::string>>;

std::string elements(const std::string& prefix, const Fields& fields) {
  std::string text;
  for (const auto& [name, content] : fields) {
    text += "<" + prefix + ":" + name + ">" + content + "</" + prefix + ":" + name + ">";
  }
  return text;
}

std::string types(const Fields& fields) { return elements("types", fields); }

/// A JPEG 2000 value within the element around it.
std::string jpeg2000(const std::string& component, const Fields& fields) {
  return "<s422mTypes:" + component + ">" + elements("s422mTypes", fields) + "</s422mTypes:" + component + ">";
}

Fields without(Fields fields, const std::string& name) {
  for (auto at = fields.begin(); at != fields.end(); ++at) {
    if (at->first == name) return fields.erase(at), fields;
  }
  return fields;
}

std::string missing(const std::string& variable, const std::string& name) {
  return "!" + variable + ".empty (): No '" + name + "' element in XML metadata";
}

TEST(RationalImport, FindsItsNumbersByName) {
  for (const auto entry : kEntries) {
    const auto inOrder = types({{"Numerator", "-5"}, {"Denominator", "1001"}});
    EXPECT_TRUE(holds(ImportedProperty(kRational, inOrder, entry).value(), Types::Rational(-5, 1001)));
    const auto swapped = types({{"Denominator", "1001"}, {"Numerator", "30000"}});
    EXPECT_TRUE(holds(ImportedProperty(kRational, swapped, entry).value(), Types::Rational(30000, 1001)));
  }
}

TEST(RationalImport, ReadsUnsigned32BitsAndTakesThemAsSigned) {
  const auto rational = [](const std::string& numerator, const std::string& denominator) {
    return ImportedProperty(kRational, types({{"Numerator", numerator}, {"Denominator", denominator}}));
  };
  EXPECT_TRUE(holds(rational("-2147483648", "4294967295").value(), Types::Rational(INT32_MIN, -1)));
  EXPECT_TRUE(holds(rational("99999999999", "x").value(), Types::Rational(-1, 0)));
}

TEST(RationalImport, ReadsAMissingNumberAs0) {
  EXPECT_TRUE(holds(ImportedProperty(kRational, types({{"Denominator", "7"}})).value(), Types::Rational(0, 7)));
  EXPECT_TRUE(holds(ImportedProperty(kRational, types({{"Numerator", "7"}, {"Denominator", ""}})).value(),
                    Types::Rational(7, 0)));
  EXPECT_TRUE(holds(ImportedProperty(kRational, "text").value(), Types::Rational(0, 0)));
}

TEST(RationalImport, KnowsItsChildrenByNamespaceAndNotByPrefix) {
  const auto content = R"(<t:Numerator xmlns:t="urn:SMPTE:Types:MXF">1</t:Numerator>
                          <types:Numerator xmlns:types="urn:other">2</types:Numerator>
                          <types:Denominator xmlns:types="urn:other">3</types:Denominator>)";
  EXPECT_TRUE(holds(ImportedProperty(kRational, content).value(), Types::Rational(1, 0)));
}

TEST(RationalImport, TakesThePrefixAsTheDocumentElementBindsIt) {
  TestDictionary dictionary;
  const TestPartition partition(dictionary.property("Prop", kRational).set("Preface", {"Prop"}));
  import(R"(<r {p} xmlns:types="urn:mine"><Preface {types}><p:Prop><types:Numerator>1</types:Numerator>
              <m:Denominator xmlns:m="urn:mine">2</m:Denominator></p:Prop></Preface></r>)",
         partition);
  EXPECT_TRUE(holds(valueOf(*partition->sets().front(), "Prop"), Types::Rational(0, 2)));
}

TEST(RationalImport, ReadsTheFirstOfTwoChildrenAndOnlyItsFirstChild) {
  const auto content = types({{"Numerator", "1<!-- -->2"}, {"Numerator", "3"}, {"Denominator", "<!--4-->5"}});
  EXPECT_TRUE(holds(ImportedProperty(kRational, content).value(), Types::Rational(1, 4)));
}

TEST(RationalImport, FindsNoChildrenBelowItsChildren) {
  const auto content = types({{"Any", types({{"Numerator", "1"}})}});
  EXPECT_TRUE(holds(ImportedProperty(kRational, content).value(), Types::Rational(0, 0)));
}

const Fields kTime = {{"Year", "2024"}, {"Month", "2"},   {"Day", "29"},   {"Hour", "23"},
                      {"Minute", "59"}, {"Second", "58"}, {"mSec4", "249"}};

/// Year, month, day, hour, minute, second and milliseconds.
std::vector<int> timeOf(const Fields& fields) {
  const ImportedProperty property(kTimestamp, types(fields));
  const auto& time = property.as<Types::Timestamp>();
  return {time.year(), time.month(), time.day(), time.hour(), time.minute(), time.second(), time.milliSecond()};
}

TEST(TimestampImport, FindsItsFieldsByName) {
  EXPECT_EQ(timeOf(kTime), (std::vector<int>{2024, 2, 29, 23, 59, 58, 249}));
  EXPECT_EQ(timeOf(Fields(kTime.rbegin(), kTime.rend())), (std::vector<int>{2024, 2, 29, 23, 59, 58, 249}));
}

TEST(TimestampImport, TakesTheUnitsOfFourMillisecondsForMilliseconds) {
  TestDictionary dictionary;
  const TestPartition partition(dictionary.property("Prop", kTimestamp).set("Preface", {"Prop"}));
  partition.add("Preface", 1).value("Prop", Types::Timestamp(2024, 1, 2, 3, 4, 5, 996));
  EXPECT_NE(XMLBuilder::exported(partition).find("<types:mSec4>249</types:mSec4>"), std::string::npos);
  EXPECT_EQ(timeOf(kTime).back(), 249);
}

TEST(TimestampImport, KeepsTheLowBitsOfItsFields) {
  Fields fields;
  for (const auto& field : kTime) fields.emplace_back(field.first, "65795");  // 0x10103
  EXPECT_EQ(timeOf(fields), (std::vector<int>{259, 3, 3, 3, 3, 3, 259}));
}

TEST(TimestampImport, ReadsAFieldThatIsNoNumberAs0) {
  Fields fields = kTime;
  fields[1].second = "May";
  EXPECT_EQ(timeOf(fields)[1], 0);
}

struct Required {
  const char* variable;
  const char* name;
  int line;
};

/// In the order in which they are looked for.
const std::vector<Required> kTimeFields = {{"secondsValue", "Second", 374}, {"milliValue", "mSec4", 377},
                                           {"yearValue", "Year", 380},      {"monthValue", "Month", 383},
                                           {"dayValue", "Day", 386},        {"hourValue", "Hour", 389},
                                           {"minutesValue", "Minute", 392}};

TEST(TimestampImport, DemandsEachOfItsFields) {
  for (const auto entry : kEntries) {
    for (const auto& field : kTimeFields) {
      EXPECT_EQ(failureOf(kTimestamp, types(without(kTime, field.name)), entry),
                invalidFormat(missing(field.variable, field.name), field.line));
    }
  }
}

TEST(TimestampImport, NamesTheFirstFieldThatItMissesInAnOrderOfItsOwn) {
  Fields fields;
  for (auto missed = kTimeFields.rbegin(); missed != kTimeFields.rend(); ++missed) {
    fields = kTime;
    for (auto field = kTimeFields.rbegin(); field != missed + 1; ++field) fields = without(fields, field->name);
    EXPECT_EQ(failureOf(kTimestamp, types(fields) + "text"),
              invalidFormat(missing(missed->variable, missed->name), missed->line));
  }
}

TEST(TimestampImport, MissesTheSecondBeforeTheYear) {
  EXPECT_EQ(failureOf(kTimestamp, types(without(without(kTime, "Second"), "Year"))),
            invalidFormat("!secondsValue.empty (): No 'Second' element in XML metadata", 374));
}

TEST(TimestampImport, MissesAFieldWithoutText) {
  for (const std::string nothing : {"", "<b/>", "<![CDATA[]]>"}) {
    Fields fields = kTime;
    fields[0].second = nothing;
    EXPECT_EQ(failureOf(kTimestamp, types(fields)), invalidFormat(missing("yearValue", "Year"), 380)) << nothing;
  }
}

TEST(TimestampImport, MissesAFieldOfBlankTextUnlessItReadsAFile) {
  Fields fields = kTime;
  fields[0].second = " ";
  EXPECT_EQ(failureOf(kTimestamp, types(fields)), invalidFormat(missing("yearValue", "Year"), 380));
  const ImportedProperty property(kTimestamp, types(fields), Entry::kFile);
  EXPECT_EQ(property.as<Types::Timestamp>().year(), 0);
}

TEST(TimestampImport, FindsNoFieldOfAnotherNamespace) {
  EXPECT_EQ(failureOf(kTimestamp, elements("st377Types", kTime)),
            invalidFormat("!secondsValue.empty (): No 'Second' element in XML metadata", 374));
}

/// The five numbers.
std::vector<int> versionOf(const Fields& fields) {
  const ImportedProperty property(kProductVersion, types(fields) + "text");
  const auto& version = property.as<Types::ProductVersion>();
  return {version.major(), version.minor(), version.patch(), version.build(),
          static_cast<int>(version.releaseVersion())};
}

TEST(ProductVersionImport, FindsItsNumbersByNameAndReadsAMissingOneAs0) {
  const Fields fields = {{"Release", "5"}, {"Build", "4"}, {"Patch", "3"}, {"Minor", "2"}, {"Major", "1"}};
  EXPECT_EQ(versionOf(fields), (std::vector<int>{1, 2, 3, 4, 5}));
  EXPECT_EQ(versionOf(without(fields, "Patch")), (std::vector<int>{1, 2, 0, 4, 5}));
  EXPECT_EQ(versionOf(without(fields, "Release")), (std::vector<int>{1, 2, 3, 4, 0}));
  EXPECT_EQ(versionOf({}), (std::vector<int>{0, 0, 0, 0, 0}));
}

TEST(ProductVersionImport, KeepsSixteenBitsOfEachNumber) {
  EXPECT_EQ(versionOf({{"Major", "-1"}, {"Minor", "65536"}, {"Patch", "65537"}, {"Build", "x"}, {"Release", "65535"}}),
            (std::vector<int>{65535, 0, 1, 0, 65535}));
}

std::string component(const std::string& code, const std::string& depth) {
  return types({{"RGBAComponent", types({{"Code", code}, {"Depth", depth}})}});
}

TEST(RGBALayoutImport, NumbersItsComponentsAsTheyCome) {
  Types::RGBALayout expected;
  expected.set(0, {'R', 10});
  expected.set(1, {'G', 8});
  for (const auto entry : kEntries) {
    const auto content = component("82", "10") + "\n  <!-- --><types:Any/>" + component("71", "8");
    EXPECT_TRUE(holds(ImportedProperty(kRGBALayout, content, entry).value(), expected));
  }
}

TEST(RGBALayoutImport, IsEmptyWithoutComponents) {
  EXPECT_TRUE(holds(ImportedProperty(kRGBALayout, "text").value(), Types::RGBALayout()));
  EXPECT_TRUE(holds(ImportedProperty(kRGBALayout, "<types:Any/>").value(), Types::RGBALayout()));
}

TEST(RGBALayoutImport, ReadsAMissingNumberAs0AndKeepsEightBits) {
  Types::RGBALayout expected;
  expected.set(0, {0, 8});
  expected.set(1, {1, 255});
  const auto content = types({{"RGBAComponent", types({{"Depth", "8"}})}}) + component("257", "-1");
  EXPECT_TRUE(holds(ImportedProperty(kRGBALayout, content).value(), expected));
}

TEST(RGBALayoutImport, LeavesMoreComponentsThanFitToTheLayout) {
  std::string content;
  for (int i = 0; i < 8; ++i) content += component("65", std::to_string(i));
  const ImportedProperty property(kRGBALayout, content);
  EXPECT_EQ(property.as<Types::RGBALayout>().get(7), (Types::RGBAComponent{65, 7}));
  EXPECT_EQ(failureOf(kRGBALayout, content + component("65", "8")), failureOf([] {
              Types::RGBALayout().set(8, {65, 8});
            }));
  EXPECT_EQ(failureOf(kRGBALayout, content + component("65", "8")).kind, "InvalidLength");
}

const Fields kComponent = {{"Ssizi", "7"}, {"XRSizi", "1"}, {"YRSizi", "2"}};

TEST(J2KPictureComponentImport, ReadsItsNumbersFromTheElementAroundThem) {
  for (const auto entry : kEntries) {
    EXPECT_TRUE(
        holds(ImportedProperty(kJ2KPictureComponent, jpeg2000("J2KPictureComponent", kComponent), entry).value(),
              Types::J2KPictureComponent(7, 1, 2)));
  }
}

TEST(J2KPictureComponentImport, KeepsTheLowEightBits) {
  const Fields fields = {{"Ssizi", "263"}, {"XRSizi", "-1"}, {"YRSizi", "x"}};
  EXPECT_TRUE(holds(ImportedProperty(kJ2KPictureComponent, jpeg2000("J2KPictureComponent", fields)).value(),
                    Types::J2KPictureComponent(7, 255, 0)));
}

TEST(J2KPictureComponentImport, DemandsTheElementAndEachOfItsNumbers) {
  const auto failure = [](const std::string& content) { return failureOf(kJ2KPictureComponent, content); };
  EXPECT_EQ(failure("text"),
            invalidFormat("domComponentElement != 0: No 'J2KPictureComponent' element from 'PictureComponentSizing' in "
                          "XML metadata",
                          255));
  const std::vector<Required> required = {
      {"sSiziValue", "Ssizi", 259}, {"xRSiziValue", "XRSizi", 262}, {"yRSiziValue", "YRSizi", 265}};
  Fields present;
  for (const auto& field : required) {
    const auto expected = invalidFormat(missing(field.variable, field.name), field.line);
    EXPECT_EQ(failure(jpeg2000("J2KPictureComponent", without(kComponent, field.name))), expected);
    EXPECT_EQ(failure(jpeg2000("J2KPictureComponent", present)), expected);
    present.emplace_back(field.name, "1");
  }
}

const Fields kStyle = {{"Scod", "1"}, {"SGcod", "4294967294"}, {"Spcod", "05aB"}};

TEST(J2KCodingStyleDefaultImport, ReadsItsNumbersAndItsBytes) {
  const Bytes bytes = {0x05, 0xab};
  for (const auto entry : kEntries) {
    EXPECT_TRUE(
        holds(ImportedProperty(kJ2KCodingStyleDefault, jpeg2000("J2KCodingStyleDefault", kStyle), entry).value(),
              Types::J2KCodingStyleDefault(1, 4294967294, bytes.data(), bytes.size())));
  }
}

TEST(J2KCodingStyleDefaultImport, DemandsTheElementAndEachOfItsFields) {
  const auto failure = [](const std::string& content) { return failureOf(kJ2KCodingStyleDefault, content); };
  EXPECT_EQ(failure("text"),
            invalidFormat("domComponentElement != 0: No 'J2KCodingStyleDefault' element from 'CodingStyleDefault' in "
                          "XML metadata",
                          296));
  const std::vector<Required> required = {
      {"scodValue", "Scod", 300}, {"sGcodValue", "SGcod", 303}, {"spcodValue", "Spcod", 306}};
  Fields present;
  for (const auto& field : required) {
    const auto expected = invalidFormat(missing(field.variable, field.name), field.line);
    EXPECT_EQ(failure(jpeg2000("J2KCodingStyleDefault", without(kStyle, field.name))), expected);
    EXPECT_EQ(failure(jpeg2000("J2KCodingStyleDefault", present)), expected);
    present.emplace_back(field.name, "1");
  }
}

TEST(J2KCodingStyleDefaultImport, RefusesBytesThatAreNotPairsOfDigits) {
  const auto failure = [](const std::string& bytes) {
    return failureOf(kJ2KCodingStyleDefault,
                     jpeg2000("J2KCodingStyleDefault", {{"Scod", "1"}, {"SGcod", "2"}, {"Spcod", bytes}}));
  };
  EXPECT_EQ(failure("05a"), invalidFormat("Value has invalid Length", 110));
  EXPECT_EQ(failure("05 a"), invalidFormat("Value contains non Hexadecimal characters", 117));
}

const Fields kQuantisation = {{"Sqcd", "66"}, {"SPgcd", "771E"}};

TEST(J2KQuantisationDefaultImport, ReadsItsNumberAndItsBytes) {
  const Bytes bytes = {0x77, 0x1e};
  for (const auto entry : kEntries) {
    const auto content = jpeg2000("J2KQuantisationDefault", kQuantisation);
    EXPECT_TRUE(holds(ImportedProperty(kJ2KQuantisationDefault, content, entry).value(),
                      Types::J2KQuantisationDefault(66, bytes.data(), bytes.size())));
  }
}

TEST(J2KQuantisationDefaultImport, DemandsTheElementAndEachOfItsFields) {
  const auto failure = [](const std::string& content) { return failureOf(kJ2KQuantisationDefault, content); };
  EXPECT_EQ(failure("text"),
            invalidFormat("domComponentElement != 0: No 'J2KQuantisationDefault' element from 'QuantisationDefault' in "
                          "XML metadata",
                          337));
  const std::vector<Required> required = {{"sqcdValue", "Sqcd", 341}, {"sPgcdValue", "SPgcd", 344}};
  Fields present;
  for (const auto& field : required) {
    const auto expected = invalidFormat(missing(field.variable, field.name), field.line);
    EXPECT_EQ(failure(jpeg2000("J2KQuantisationDefault", without(kQuantisation, field.name))), expected);
    EXPECT_EQ(failure(jpeg2000("J2KQuantisationDefault", present)), expected);
    present.emplace_back(field.name, "1");
  }
  EXPECT_EQ(failure(jpeg2000("J2KQuantisationDefault", {{"Sqcd", "1"}, {"SPgcd", "123"}})),
            invalidFormat("Value has invalid Length", 110));
}

TEST(J2KImport, RefusesTheChildrenWithoutTheElementAroundThem) {
  EXPECT_EQ(failureOf(kJ2KPictureComponent, elements("s422mTypes", kComponent)).line, 255);
  EXPECT_EQ(failureOf(kJ2KCodingStyleDefault, elements("s422mTypes", kStyle)).line, 296);
  EXPECT_EQ(failureOf(kJ2KQuantisationDefault, elements("s422mTypes", kQuantisation)).line, 337);
}

TEST(J2KImport, ReadsItemsOfACollection) {
  const auto item = "<p:Element>" + jpeg2000("J2KPictureComponent", kComponent) + "</p:Element>";
  const ImportedProperty property(MetaMetadata::arrayOf(kJ2KPictureComponent), item + item);
  const auto& array = property.as<Types::Array>();
  ASSERT_EQ(array.size(), 2u);
  EXPECT_EQ(array.itemSize(), 3u);
  EXPECT_TRUE(holds(&array.at(1), Types::J2KPictureComponent(7, 1, 2)));
}

TEST(J2KImport, NamesThePrefixThatTheDocumentDoesNotDeclare) {
  TestDictionary dictionary;
  const TestPartition partition(dictionary.property("Prop", kJ2KPictureComponent).set("Preface", {"Prop"}));
  EXPECT_EQ(failureOf([&] { import("<r {p}><Preface><p:Prop>text</p:Prop></Preface></r>", partition); }),
            pathFailure("No namespace for prefix 's422mTypes' [err:XPST0081] at :1:3"));
}

}  // namespace
}  // namespace Vantor::XML2Partition
