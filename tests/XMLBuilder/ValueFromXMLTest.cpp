#include "XMLBuilder/ValueFromXML.h"

#include <gtest/gtest.h>

#include "Core/Types/Types.h"
#include "tests/XMLBuilder/ImportSupport.h"

namespace Vantor::XML2Partition {
namespace {

using namespace Types::Identifiers;

std::string repeated(const std::string& text, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

/// Octets in the dotted form.
std::string dotted(int octets, const std::string& octet = "A5") { return repeated(octet + ".", octets - 1) + octet; }

template <class T, class Argument>
void expectEach(Identifier type, const std::vector<std::pair<const char*, Argument>>& texts) {
  for (const auto& [text, value] : texts) {
    EXPECT_TRUE(holds(ImportedProperty(type, text).value(), T(value))) << text;
  }
}

TEST(ValueImport, ReadsAnythingBut0AsTrue) {
  for (const auto entry : kEntries) {
    EXPECT_TRUE(holds(ImportedProperty(kBoolean, "0", entry).value(), Types::Boolean(false)));
    for (const auto* text : {"1", "false", " 0", "0 ", "00", "true", "-0", "\u00e9"}) {
      EXPECT_TRUE(holds(ImportedProperty(kBoolean, text, entry).value(), Types::Boolean(true))) << text;
    }
  }
}

TEST(ValueImport, LeavesAPropertyUnsetWhoseElementIsEmpty) {
#define VANTOR_CHECK_TYPE(Type, number, octets)                                                                \
  if (k##Type != kArray && k##Type != kBatch) {                                                                \
    for (const auto entry : kEntries) EXPECT_FALSE(ImportedProperty(k##Type, "", entry).isPresent()) << #Type; \
  }
  VANTOR_FOR_EACH_TYPE(VANTOR_CHECK_TYPE)
#undef VANTOR_CHECK_TYPE
}

TEST(ValueImport, LeavesAPropertyUnsetWhoseTypeHasNoFormOfItsOwn) {
  for (const auto type : {kLocalTag, kDataValue, kNone, static_cast<Identifier>(1), static_cast<Identifier>(4),
                          static_cast<Identifier>(10), static_cast<Identifier>(43), static_cast<Identifier>(9999)}) {
    EXPECT_FALSE(ImportedProperty(type, "3C.0A").isPresent()) << type;
  }
}

TEST(ValueImport, ReadsANumberUpToTheFirstUnitThatIsNoDigit) {
  expectEach<Types::Int32, int32>(kInt32, {{"12abc", 12},
                                           {" 42", 42},
                                           {"\t\n 42 ", 42},
                                           {"-7", -7},
                                           {"+7", 7},
                                           {"1 2", 1},
                                           {"1.9", 1},
                                           {"0x10", 0},
                                           {"007", 7},
                                           {"1e3", 1},
                                           {"1,000", 1}});
}

TEST(ValueImport, ReadsTextThatIsNoNumberAs0) {
  expectEach<Types::Int32, int32>(kInt32,
                                  {{"abc", 0}, {"-", 0}, {"- 1", 0}, {"--1", 0}, {"\u0661", 0}, {"\u00a01", 0}});
  EXPECT_TRUE(holds(ImportedProperty(kInt32, "  ", Entry::kFile).value(), Types::Int32(0)));
}

TEST(ValueImport, KeepsTheLowBitsOfANumberThatDoesNotFit) {
  expectEach<Types::UInt8, uint8>(kUInt8, {{"300", 44}, {"256", 0}, {"-1", 255}, {"4294967295", 255}});
  expectEach<Types::UInt16, uint16>(kUInt16, {{"-1", 65535}, {"65536", 0}, {"70000", 4464}});
  expectEach<Types::UInt32, uint32>(kUInt32, {{"-1", UINT32_MAX}, {"4294967295", UINT32_MAX}});
  expectEach<Types::Int8, int8>(kInt8, {{"300", 44}, {"128", -128}, {"-129", 127}, {"255", -1}});
  expectEach<Types::Int16, int16>(kInt16, {{"32768", -32768}, {"65535", -1}, {"70000", 4464}, {"-32769", 32767}});
  expectEach<Types::Orientation, uint8>(kOrientation, {{"258", 2}, {"7", 7}, {"-1", 255}});
  expectEach<Types::SignalStandard, uint8>(kSignalStandard, {{"259", 3}, {"-1", 255}});
}

TEST(ValueImport, ReadsANumberThatItsStreamCannotHoldAsTheNearestOne) {
  expectEach<Types::Int32, int32>(kInt32, {{"2147483648", INT32_MAX}, {"-99999999999", INT32_MIN}});
  expectEach<Types::UInt32, uint32>(kUInt32, {{"4294967296", UINT32_MAX}, {"99999999999999999999", UINT32_MAX}});
  expectEach<Types::UInt8, uint8>(kUInt8, {{"4294967296", 255}});
  expectEach<Types::Int64, int64>(kInt64, {{"9223372036854775808", INT64_MAX}, {"-9223372036854775809", INT64_MIN}});
  expectEach<Types::UInt64, uint64>(kUInt64, {{"18446744073709551616", UINT64_MAX}});
}

TEST(ValueImport, Reads64Bits) {
  expectEach<Types::Int64, int64>(kInt64, {{"-9223372036854775808", INT64_MIN}, {"9223372036854775807", INT64_MAX}});
  expectEach<Types::Length, int64>(kLength, {{"-1", -1}, {"9223372036854775807", INT64_MAX}});
  expectEach<Types::Position, int64>(kPosition, {{"-9223372036854775808", INT64_MIN}, {"5", 5}});
  expectEach<Types::UInt64, uint64>(kUInt64, {{"18446744073709551615", UINT64_MAX}, {"-1", UINT64_MAX}});
}

TEST(ValueImport, ReadsAVersionAsMajorTimes256PlusMinor) {
  const auto version = [](const char* text) {
    const ImportedProperty property(kVersionType, text);
    const auto& value = property.as<Types::VersionType>();
    return std::to_string(value.major()) + "." + std::to_string(value.minor());
  };
  EXPECT_EQ(version("258"), "1.2");
  EXPECT_EQ(version("65535"), "255.255");
  EXPECT_EQ(version("65794"), "1.2");  // 0x10102
  EXPECT_EQ(version("1.2"), "0.1");
}

TEST(ValueImport, ReadsPairsOfHexadecimalDigits) {
  const std::pair<const char*, Bytes> texts[] = {{"0a1B", {0x0a, 0x1b}},
                                                 {"00", {0}},
                                                 {"ffFF", {0xff, 0xff}},
                                                 {"0123456789aBcDeF", {1, 0x23, 0x45, 0x67, 0x89, 0xab, 0xcd, 0xef}}};
  for (const auto& [text, bytes] : texts) {
    EXPECT_TRUE(holds(ImportedProperty(kDataStream, text).value(), Types::DataStream(bytes)));
    EXPECT_TRUE(holds(ImportedProperty(kUnknown, text).value(), Types::Unknown(bytes)));
  }
}

TEST(ValueImport, ReadsAnEmptyTextAsNoBytes) {
  for (const auto entry : kEntries) {
    EXPECT_TRUE(holds(ImportedProperty(kDataStream, "<b/>", entry).value(), Types::DataStream()));
    EXPECT_TRUE(holds(ImportedProperty(kUnknown, "<b/>", entry).value(), Types::Unknown()));
  }
}

TEST(ValueImport, RefusesAnOddCountOfDigitsBeforeItLooksAtThem) {
  for (const auto entry : kEntries) {
    for (const auto type : {kDataStream, kUnknown}) {
      for (const auto* text : {"0a1", "0a 1b", "xyz", "0"}) {
        EXPECT_EQ(failureOf(type, text, entry), invalidFormat("Value has invalid Length", 110)) << text;
      }
    }
  }
}

TEST(ValueImport, RefusesWhatIsNoHexadecimalDigit) {
  for (const auto entry : kEntries) {
    for (const auto type : {kDataStream, kUnknown}) {
      for (const auto* text : {"0a 1", "0x0a", "0g", "06.0E.2B", " 0a ", "0\u00e9", "\uff10\uff11", "-1"}) {
        EXPECT_EQ(failureOf(type, text, entry), invalidFormat("Value contains non Hexadecimal characters", 117))
            << text;
      }
    }
  }
}

TEST(ValueImport, SaysTheSameOfAHexadecimalTextByItself) {
  EXPECT_EQ(parseHexString(u""), Bytes());
  EXPECT_EQ(parseHexString(u"0aB1"), (Bytes{0x0a, 0xb1}));
  EXPECT_EQ(failureOf([] { parseHexString(u"0"); }), invalidFormat("Value has invalid Length", 110));
  EXPECT_EQ(failureOf([] { parseHexString(u"/0"); }), invalidFormat("Value contains non Hexadecimal characters", 117));
  for (char16_t unit = 0; unit < 0x200; ++unit) {
    const bool isDigit =
        (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'F') || (unit >= u'a' && unit <= u'f');
    EXPECT_EQ(failureOf([&] { parseHexString(wstring(2, unit)); }).kind, isDigit ? "nothing" : "InvalidFormat");
  }
}

TEST(ValueImport, ReadsTextsWhole) {
  for (const auto entry : kEntries) {
    EXPECT_TRUE(holds(ImportedProperty(kUTF16String, " a\u00e9\u20ac b\t", entry).value(),
                      Types::UTF16String(u" a\u00e9\u20ac b\t")));
    EXPECT_TRUE(
        holds(ImportedProperty(kUTF8String, " \U0001F600 ", entry).value(), Types::UTF8String(u" \U0001F600 ")));
    EXPECT_TRUE(holds(ImportedProperty(kISO7String, " a&lt;b ", entry).value(), Types::ISO7String(" a<b ")));
    EXPECT_TRUE(holds(ImportedProperty(kISO8String, "\u00e9 ", entry).value(), Types::ISO8String("\xe9 ")));
  }
}

TEST(ValueImport, NarrowsWhatIsNoLatin1ToQuestionMarks) {
  EXPECT_TRUE(holds(ImportedProperty(kISO8String, "a\u20acb").value(), Types::ISO8String("a?b")));
}

TEST(ValueImport, ReadsTheFirstChildOfAnElementOnly) {
  EXPECT_TRUE(holds(ImportedProperty(kUTF16String, "a<!-- -->b").value(), Types::UTF16String(u"a")));
  EXPECT_TRUE(holds(ImportedProperty(kUTF16String, "<![CDATA[ a ]]>b").value(), Types::UTF16String(u" a ")));
  EXPECT_TRUE(holds(ImportedProperty(kUTF16String, "<b>c<d>e</d><!-- -->f</b>g").value(), Types::UTF16String(u"cef")));
  EXPECT_TRUE(holds(ImportedProperty(kUTF16String, "<!--c-->b").value(), Types::UTF16String(u"c")));
}

TEST(ValueImport, ReadsTheFirstCodeUnitOfACharacter) {
  expectEach<Types::UTF16, uint16>(kUTF16, {{"A", 'A'}, {" BC", 'B'}, {"\u20ac", 0x20ac}, {"\U0001F600", 0xd83d}});
  EXPECT_TRUE(holds(ImportedProperty(kUTF16, " ", Entry::kFile).value(), Types::UTF16(0)));
}

TEST(ValueImport, ReadsTheFirstTokenOfAnIdentifier) {
  const Bytes octets(64, 0xa5);
  for (const std::string around : {"", " ", "\n\t"}) {
    const auto value = [&](Identifier type, int size) {
      return ImportedProperty(type, around + dotted(size) + around + (around.empty() ? "" : "more"));
    };
    EXPECT_TRUE(holds(value(kUniversalLabel, 16).value(), Types::UniversalLabel(octets.data())));
    EXPECT_TRUE(holds(value(kUUID, 16).value(), Types::UUID(octets.data())));
    EXPECT_TRUE(holds(value(kAUID, 16).value(), Types::AUID(octets.data())));
    EXPECT_TRUE(holds(value(kUMID32, 32).value(), Types::UMID32(octets.data())));
    EXPECT_TRUE(holds(value(kUMID64, 64).value(), Types::UMID64(octets.data())));
  }
}

/// What a value's own constructor throws for a text.
template <class T>
Failure failureOfText(const wstring& text) {
  return failureOf([&] { T(text, kDottedForm); });
}

TEST(ValueImport, LeavesMalformedIdentifiersToTheirTypes) {
  for (const auto& [narrow, wide] :
       {std::pair<std::string, wstring>{"A5.A5", u"A5.A5"}, {"id", u"id"}, {"<b/>", u""}}) {
    EXPECT_EQ(failureOf(kUniversalLabel, narrow), failureOfText<Types::UniversalLabel>(wide));
    EXPECT_EQ(failureOf(kUUID, narrow), failureOfText<Types::UUID>(wide));
    EXPECT_EQ(failureOf(kAUID, narrow), failureOfText<Types::AUID>(wide));
    EXPECT_EQ(failureOf(kUMID32, narrow), failureOfText<Types::UMID32>(wide));
    EXPECT_EQ(failureOf(kUMID64, narrow), failureOfText<Types::UMID64>(wide));
    EXPECT_EQ(failureOf(kUUID, narrow).kind, "InvalidFormat");
  }
}

constexpr XMLName kExtendedClip{u"p", u"urn:p", u"ExtendedClipID"};

/// The value of a property of that tag name.
Bytes clipOctets(const std::string& content, const char* element = "p:ExtendedClipID") {
  TestDictionary dictionary;
  dictionary.property("Clip", kUMID64, kExtendedClip);
  const TestPartition partition(dictionary.set("Preface", {"Clip"}));
  import(document("<p:Preface><" + std::string(element) + ">" + content + "</" + element + "></p:Preface>"), partition);
  const auto* value = valueOf(*partition->sets().front(), "Clip");
  return value == nullptr ? Bytes() : Bytes(value->rawBuffer(), value->rawBuffer() + value->encodedSize());
}

TEST(ValueImport, PadsABasicUMIDOfAnExtendedClipWithZeros) {
  Bytes octets(64);
  std::fill_n(octets.begin(), 32, 0xa5);
  EXPECT_EQ(clipOctets(dotted(32)), octets);
  EXPECT_EQ(clipOctets(" " + dotted(32) + " more"), octets);
}

TEST(ValueImport, TakesAnExtendedUMIDOfAnExtendedClipAsItStands) { EXPECT_EQ(clipOctets(dotted(64)), Bytes(64, 0xa5)); }

TEST(ValueImport, PadsNoOtherTextOfAnExtendedClip) {
  for (const auto octets : {1, 31, 33}) {
    EXPECT_EQ(failureOf([&] { clipOctets(dotted(octets)); }).kind, "InvalidFormat") << octets;
  }
}

TEST(ValueImport, PadsTheUMIDOfNoOtherProperty) {
  wstring text;
  for (int i = 0; i < 32; ++i) text += i == 0 ? u"A5" : u".A5";
  EXPECT_EQ(failureOf(kUMID64, dotted(32)), failureOfText<Types::UMID64>(text));
  EXPECT_EQ(failureOf(kUMID64, dotted(32)).kind, "InvalidFormat");
}

TEST(ValueImport, ReadsAnAttributeWhole) {
  TestDictionary dictionary;
  dictionary.property("Generation", kUTF16String, {u"x", u"urn:x", u"GenerationUID"});
  const TestPartition partition(dictionary.set("Preface", {"Generation"}));
  import(document("<p:Preface rp210:GenerationUID=\" a b \"/><p:Preface rp210:GenerationUID=\"\"/>"), partition);
  EXPECT_TRUE(holds(valueOf(*partition->sets()[0], "Generation"), Types::UTF16String(u" a b ")));
  EXPECT_TRUE(holds(valueOf(*partition->sets()[1], "Generation"), Types::UTF16String(u"")));
}

TEST(ValueImport, FindsNoChildrenInAnAttribute) {
  TestDictionary dictionary;
  const XMLName name{u"x", u"urn:x", u"GenerationUID"};
  dictionary.property("Ratio", kRational, name).property("Time", kTimestamp, name);
  const TestPartition partition(dictionary.set("Preface", {"Ratio"}).set("Other", {"Time"}));
  import(document("<p:Preface rp210:GenerationUID=\"1\"/>"), partition);
  EXPECT_TRUE(holds(valueOf(*partition->sets()[0], "Ratio"), Types::Rational(0, 0)));
  EXPECT_EQ(failureOf([&] { import(document("<p:Other rp210:GenerationUID=\"1\"/>"), partition); }),
            invalidFormat("!secondsValue.empty (): No 'Second' element in XML metadata", 374));
}

}  // namespace
}  // namespace Vantor::XML2Partition
