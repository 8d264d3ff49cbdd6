#include "tests/XMLBuilder/GoldenValues.h"

namespace Vantor::XMLBuilder {
namespace {

/// A document with one property, of this name and value.
std::string exportedValue(const Types::SimpleDataType& value, const XMLName& name) {
  TestDictionary dictionary;
  dictionary.property("Prop", Types::Identifiers::kUnknown, name);
  TestPartition partition(dictionary.set("Preface", {"Prop"}));
  partition.add("Preface", 1).value("Prop", value);
  return exported(partition);
}

/// What the property element holds.
std::string formOf(const Types::SimpleDataType& value, std::u16string_view uri = u"urn:p") {
  const std::string text = exportedValue(value, {u"x", uri});
  const auto start = text.find('>', text.find("<x:Prop")) + 1;
  return text.substr(start, text.find("</x:Prop>") - start);
}

/// A property that holds something; one that holds nothing has no end tag.
std::string element(const std::string& name, const std::string& content) {
  return content == "(nothing)" ? "<" + name + "/>" : "<" + name + ">" + content + "</" + name + ">";
}

void expectLegacy(const GoldenValue& golden) {
  EXPECT_XML(exportedValue(*golden.value, {u"p", u"urn:p"}), R"(
    <s377m:MetadataSets {p} {rp210} {s377m} {s422mTypes} {types}>
      <p:Preface rp210:InstanceUID="{1}">)" + element("p:Prop", golden.legacy) +
                                                                 R"(</p:Preface>
    </s377m:MetadataSets>)");
}

void expectSt434(const GoldenValue& golden) {
  EXPECT_XML(exportedValue(*golden.value, {u"st434", kSt434Elements}), R"(
    <s377m:MetadataSets {p} {rp210} {s377m} {st377Types} {st434}>
      <p:Preface rp210:InstanceUID="{1}">)" + element("st434:Prop", golden.st434) +
                                                                           R"(</p:Preface>
    </s377m:MetadataSets>)");
}

#define VANTOR_TEST_TYPE(Type, number, octets)                                     \
  TEST(ValueForms, Type##HasItsFormInTheLegacyNamespaces) {                        \
    for (const auto& golden : Golden<Types::Type>::values()) expectLegacy(golden); \
  }                                                                                \
  TEST(ValueForms, Type##HasItsFormInTheNamespacesOfSt434) {                       \
    for (const auto& golden : Golden<Types::Type>::values()) expectSt434(golden);  \
  }
VANTOR_FOR_EACH_TYPE(VANTOR_TEST_TYPE)
#undef VANTOR_TEST_TYPE

TEST(ValueForms, EveryTypeHasAGoldenValueOfItsOwnType) {
#define VANTOR_CHECK_TYPE(Type, number, octets)        \
  ASSERT_FALSE(Golden<Types::Type>::values().empty()); \
  EXPECT_EQ(Golden<Types::Type>::values()[0].value->identifier(), Types::Identifiers::k##Type);
  VANTOR_FOR_EACH_TYPE(VANTOR_CHECK_TYPE)
#undef VANTOR_CHECK_TYPE
}

TEST(ValueForms, OnlyTheExactNamespaceOfSt434ElementsChangesTheForm) {
  const Types::Rational half(1, 2);
  EXPECT_EQ(formOf(half, kSt434Elements),
            "<st377Types:Numerator>1</st377Types:Numerator><st377Types:Denominator>2</st377Types:Denominator>");
  for (const auto* uri : {u"http://www.smpte-ra.org/schemas/434/2014/elements/335/2012/",
                          u"http://www.smpte-ra.org/schemas/434/2014/Elements/335/2012",
                          u"http://www.smpte-ra.org/schemas/434/2014/elements/335/201",
                          u"http://www.smpte-ra.org/schemas/434/2014/types/377-1/2012",
                          u"http://www.smpte-ra.org/schemas/434/2006/elements/335/2012", u"urn:SMPTE:RP210"}) {
    EXPECT_EQ(formOf(half, uri), "<types:Numerator>1</types:Numerator><types:Denominator>2</types:Denominator>");
  }
}

TEST(ValueForms, RGBAComponentsKeepTheirPrefixInTheTypesNamespaceOfSt434) {
  const std::string text = formOf(Types::RGBALayout(), kSt434Elements);
  EXPECT_EQ(text.substr(0, text.find("</types:RGBAComponent>")),
            "<types:RGBAComponent xmlns:types=\"http://www.smpte-ra.org/schemas/434/2014/types/377-1/2012\">"
            "<types:Code>0</types:Code><types:Depth>0</types:Depth>");
}

TEST(ValueForms, ALayoutHasFiveComponentsThoughTheFirstHasCode0) {
  Types::RGBALayout layout;
  layout.set(1, {'G', 10});
  const std::string text = formOf(layout);
  std::size_t components = 0;
  for (auto at = text.find("<types:RGBAComponent>"); at != std::string::npos;
       at = text.find("<types:RGBAComponent>", at + 1)) {
    ++components;
  }
  EXPECT_EQ(components, 5u);
}

TEST(ValueForms, TrueIs1) {
  EXPECT_EQ(formOf(Types::Boolean(true)), "1");
  EXPECT_EQ(formOf(Types::Boolean(false)), "0");
}

TEST(ValueForms, NumbersOf8BitsAreNumbersAndTheSmallestOf64BitsHasAllItsDigits) {
  EXPECT_EQ(formOf(Types::Int8(-1)), "-1");
  EXPECT_EQ(formOf(Types::UInt8(255)), "255");
  EXPECT_EQ(formOf(Types::Int64(INT64_MIN)), "-9223372036854775808");
}

TEST(ValueForms, AVersionIsOneNumber) {
  EXPECT_EQ(formOf(Types::VersionType(0, 0)), "0");
  EXPECT_EQ(formOf(Types::VersionType(1, 2)), "258");
  EXPECT_EQ(formOf(Types::VersionType(255, 255)), "65535");
}

TEST(ValueForms, MillisecondsAreWrittenInUnitsOfFour) {
  const auto mSec4 = [](uint16 milliSecond) {
    const std::string text = formOf(Types::Timestamp(2024, 1, 2, 3, 4, 5, milliSecond));
    return text.substr(text.find("<types:mSec4>"));
  };
  EXPECT_EQ(mSec4(3), "<types:mSec4>0</types:mSec4>");
  EXPECT_EQ(mSec4(999), "<types:mSec4>249</types:mSec4>");
  EXPECT_EQ(mSec4(1000), "<types:mSec4>250</types:mSec4>");
}

TEST(ValueForms, BytesAreTwoUpperCaseDigitsEach) {
  EXPECT_EQ(formOf(Types::DataStream(Bytes{0x0f, 0xf0})), "0FF0");
  EXPECT_EQ(formOf(Types::DataStream(Bytes{0x0a})), "0A");
}

TEST(ValueForms, AStreamOfMoreThan65535BytesKeepsAllOfThem) {
  const std::string text = formOf(Types::DataStream(Bytes(70000, 0x5a)));
  EXPECT_EQ(text.size(), 140000u);
}

TEST(ValueForms, AnEmptyArrayLeavesItsElementEmpty) {
  EXPECT_NE(exportedValue(Types::Array(), {}).find("<p:Prop/>"), std::string::npos);
}

TEST(ValueForms, ACodingStyleIsThreeElementsWithoutOneAroundThem) {
  const Bytes style = {0x01};
  EXPECT_EQ(formOf(Types::J2KCodingStyleDefault(1, 2, style.data(), style.size())),
            "<s422mTypes:Scod>1</s422mTypes:Scod><s422mTypes:SGcod>2</s422mTypes:SGcod>"
            "<s422mTypes:Spcod>01</s422mTypes:Spcod>");
}

}  // namespace
}  // namespace Vantor::XMLBuilder
