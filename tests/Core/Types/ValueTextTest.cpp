#include "Core/Types/ValueText.h"

#include <gtest/gtest.h>

#include <string>

#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Strings.h"
#include "tests/Core/Types/Samples.h"

namespace Vantor::Types {
namespace {

using namespace Identifiers;

std::string textOf(const SimpleDataType& value) { return Utils::wstringToString(textOfValue(value)); }

/// The text of the value that was read from a text.
std::string reread(Identifier type, std::u16string_view text) { return textOf(*valueFromText(type, text)); }

template <class Function>
std::string refusal(Function&& function) {
  try {
    function();
  } catch (const Exceptions::InvalidFormat& error) {
    return error.what();
  }
  return "none";
}
std::string refusal(Identifier type, std::u16string_view text) {
  return refusal([&] { valueFromText(type, text); });
}
std::string refusedArray(Identifier itemType, std::u16string_view text) {
  return refusal([&] { collectionFromText(kArray, itemType, text); });
}

template <class T>
class TextOfEveryType : public ::testing::Test {};
template <class Nothing, class... Listed>
struct TestTypes {
  using Types = ::testing::Types<Listed...>;
};
#define VANTOR_LIST_TYPE(Type, number, octets) , Type
using AllTypes = TestTypes<void VANTOR_FOR_EACH_TYPE(VANTOR_LIST_TYPE)>::Types;
#undef VANTOR_LIST_TYPE
TYPED_TEST_SUITE(TextOfEveryType, AllTypes, TypeNames);

TYPED_TEST(TextOfEveryType, IsReadBackAsAnEqualValue) {
  for (const auto& value : {Sample<TypeParam>::value(), Sample<TypeParam>::other()}) {
    const auto text = textOfValue(value);
    const auto type = TypeParam::kIdentifier;
    const auto read =
        type == kArray || type == kBatch ? collectionFromText(type, kUnknown, text) : valueFromText(type, text);
    EXPECT_EQ(read->identifier(), type);
    EXPECT_EQ(textOfValue(*read), text);
    // An empty collection of items without a fixed size does not show the size that it was made with.
    const bool isEmptyCollection = text == u"[]";
    EXPECT_TRUE(isEmptyCollection || read->equals(value)) << textOf(value);
  }
}

TEST(ValueText, WritesNumbersInDecimalAndReadsTheWholeText) {
  EXPECT_EQ(textOf(Int8(int8{-128})), "-128");
  EXPECT_EQ(textOf(UInt64(~uint64{0})), "18446744073709551615");
  EXPECT_EQ(reread(kUInt8, u" 255\n"), "255");
  EXPECT_EQ(reread(kLength, u"-1"), "-1");
  EXPECT_EQ(refusal(kUInt8, u"256"), "'256' is no whole number from 0 to 255");
  EXPECT_EQ(refusal(kUInt8, u"-1"), "'-1' is no whole number from 0 to 255");
  EXPECT_EQ(refusal(kInt16, u"12abc"), "'12abc' is no whole number from -32768 to 32767");
  EXPECT_EQ(refusal(kPosition, u""), "'' is no whole number from -9223372036854775808 to 9223372036854775807");
  EXPECT_EQ(refusal(kInt32, u"1 2"), "'1 2' is no whole number from -2147483648 to 2147483647");
}

TEST(ValueText, ReadsBooleansAsDigitsAndAsWords) {
  EXPECT_EQ(reread(kBoolean, u"true"), "1");
  EXPECT_EQ(reread(kBoolean, u" 0 "), "0");
  EXPECT_EQ(reread(kBoolean, u"false"), "0");
  EXPECT_EQ(refusal(kBoolean, u"yes"), "'yes' is neither 0 nor 1, neither false nor true");
}

TEST(ValueText, ReadsIdentifiersInEveryFormAndWritesDottedPairs) {
  const std::string dotted = "00.11.22.33.44.55.66.77.88.99.AA.BB.CC.DD.EE.FF";
  EXPECT_EQ(reread(kUUID, u"urn:uuid:00112233-4455-6677-8899-aabbccddeeff"), dotted);
  EXPECT_EQ(reread(kUniversalLabel, u"urn:smpte:ul:00112233.44556677.8899aabb.ccddeeff"), dotted);
  EXPECT_EQ(reread(kWeakReference, u" urn:uuid:00112233-4455-6677-8899-aabbccddeeff "), dotted);
  EXPECT_EQ(reread(kLocalTag, u"3c0a"), "3C.0A");
  EXPECT_EQ(refusal(kUUID, u"x"), "'x' is not the text of a UUID, such as " + dotted);
  EXPECT_EQ(refusal(kStrongReference, u"x"), "'x' is not the text of a UUID, such as " + dotted);
  EXPECT_EQ(refusal(kAUID, u"00 11"), "'00 11' is more than one identifier");
  EXPECT_EQ(refusal(kLocalTag, u"3C.0"), "'3C.0' is not the text of a LocalTag, such as 00.11");
}

TEST(ValueText, KeepsTextsAsTheyAre) {
  EXPECT_EQ(reread(kUTF16String, u" a \"b\"\n"), " a \"b\"\n");
  EXPECT_EQ(reread(kUTF8String, u"\u00e4 \U0001F600"), "\u00e4 \U0001F600");
  EXPECT_EQ(reread(kISO8String, u"\u00e4"), "\u00e4");
  EXPECT_EQ(refusal(kISO7String, u"\u00e4"),
            "'\u00e4' is no ISO 7-bit text: it has characters that this encoding lacks");
  EXPECT_EQ(refusal(kISO8String, u"\u20ac"),
            "'\u20ac' is no ISO 8-bit text: it has characters that this encoding lacks");
  EXPECT_EQ(refusal(kUTF16String, wstring(1, u'\xd800')), "'\uFFFD' is not the text of a UTF16String");
  EXPECT_EQ(refusal(kUTF8String, std::u16string_view(u"a\0b", 3)), "\"a\\u0000b\" holds a NUL");
  EXPECT_EQ(reread(kUTF16, u" "), " ");
  EXPECT_EQ(textOf(*valueFromText(kUTF16, u"")), "");
  EXPECT_EQ(refusal(kUTF16, u"ab"), "'ab' is not one UTF-16 code unit");
}

TEST(ValueText, WritesRecordsAsPeopleDoAndReadsThemBack) {
  EXPECT_EQ(reread(kRational, u" 30000/-1001 "), "30000/-1001");
  EXPECT_EQ(reread(kVersionType, u"1.3"), "1.3");
  EXPECT_EQ(reread(kVersionType, u"259"), "1.3");
  EXPECT_EQ(reread(kProductVersion, u"1.2.3.65535.4"), "1.2.3.65535.4");
  EXPECT_EQ(reread(kTimestamp, u"2024-02-09T03:04:05.008"), "2024-02-09T03:04:05.008");
  EXPECT_EQ(reread(kTimestamp, u"2024-02-09T03:04:05"), "2024-02-09T03:04:05.000");
  EXPECT_EQ(reread(kTimestamp, u"0000-00-00T00:00:00.1020"), "0000-00-00T00:00:00.1020");
  EXPECT_EQ(reread(kJ2KPictureComponent, u"09 01 02"), "090102");
}

TEST(ValueText, RefusesWhatIsNoRecordWithAnExample) {
  for (const auto* text : {u"25", u"25/", u"/1", u"25/1/1", u"25 / 1", u"2147483648/1", u"", u"25-1", u"x"}) {
    EXPECT_EQ(refusal(kRational, text),
              "'" + Utils::wstringToString(text) + "' is not the text of a Rational, such as 25/1");
  }
  for (const auto* text : {u"1.", u"256.0", u"65536", u"1.3.5", u"v1.3"}) {
    EXPECT_EQ(refusal(kVersionType, text),
              "'" + Utils::wstringToString(text) + "' is not the text of a VersionType, such as 1.3");
  }
  for (const auto* text : {u"1.2.3.4", u"1.2.3.4.5.6", u"1.2.3.4.65536"}) {
    EXPECT_EQ(refusal(kProductVersion, text),
              "'" + Utils::wstringToString(text) + "' is not the text of a ProductVersion, such as 1.2.3.4.1");
  }
  for (const auto* text : {u"2024-02-09", u"2024-02-09 03:04:05", u"24-02-09T03:04:05", u"2024-2-9T03:04:05",
                           u"2024-02-09T03:04:05.8", u"2024-02-09T03:04:05Z", u"2024-02-256T03:04:05"}) {
    EXPECT_EQ(refusal(kTimestamp, text),
              "'" + Utils::wstringToString(text) + "' is not the text of a Timestamp, such as 2024-02-09T03:04:05.008");
  }
  EXPECT_EQ(refusal(kTimestamp, u"2024-02-09T03:04:05.010"),
            "the milliseconds of '2024-02-09T03:04:05.010' are no multiple of 4 up to 1020");
  EXPECT_EQ(refusal(kTimestamp, u"2024-02-09T03:04:05.1024"),
            "the milliseconds of '2024-02-09T03:04:05.1024' are no multiple of 4 up to 1020");
  EXPECT_EQ(refusal(kJ2KPictureComponent, u"0901"), "'0901' is not the text of a J2KPictureComponent, such as 000000");
}

TEST(ValueText, ReadsOctetsFromHexadecimalDigits) {
  EXPECT_EQ(reread(kDataStream, u"0a 1B\n"), "0A1B");
  EXPECT_EQ(reread(kUnknown, u""), "");
  EXPECT_EQ(refusal(kDataValue, u"0g"), "'0g' is no run of octets: these are hexadecimal digits, two to an octet");
  EXPECT_EQ(refusal(kDataStream, u"0a1"), "'0a1' is no run of octets: the last of them lacks its second digit");
}

TEST(ValueText, CutsWhatItQuotes) {
  EXPECT_EQ(refusal(kBoolean, std::u16string(41, u'x')),
            "'" + std::string(40, 'x') + "...' is neither 0 nor 1, neither false nor true");
}

std::string rereadArray(Identifier itemType, std::u16string_view text) {
  return textOf(*collectionFromText(kArray, itemType, text));
}

TEST(ValueText, ReadsCollectionsItemByItem) {
  EXPECT_EQ(rereadArray(kUInt16, u" [ 1,2 , 3 ] "), "[1, 2, 3]");
  EXPECT_EQ(rereadArray(kRational, u"[25/1, 30000/1001]"), "[25/1, 30000/1001]");
  EXPECT_EQ(rereadArray(kUInt16, u"[]"), "[]");
  EXPECT_EQ(toBytes(*collectionFromText(kBatch, kUInt16, u"[]")), (Bytes{0, 0, 0, 0, 0, 0, 0, 2}));
  EXPECT_EQ(toBytes(*collectionFromText(kBatch, kUInt8, u"[7, 8]")), (Bytes{0, 0, 0, 2, 0, 0, 0, 1, 7, 8}));
}

TEST(ValueText, QuotesTextsInCollections) {
  EXPECT_EQ(rereadArray(kUTF16String, u"[a, b c]"), R"(["a", "b c"])");
  EXPECT_EQ(rereadArray(kUTF8String, uR"(["a, \"b\"", "\\\u000A]"])"), R"(["a, \"b\"", "\\\u000A]"])");
  EXPECT_EQ(rereadArray(kUTF16, u"[\" \", \"\"]"), "[\" \", \"\"]");
}

TEST(ValueText, FillsShorterTextsOfACollectionWithNULs) {
  const auto texts = collectionFromText(kArray, kISO7String, u"[\"abc\", \"d\", \"\"]");
  EXPECT_EQ(toBytes(*texts), (Bytes{0, 0, 0, 3, 0, 0, 0, 3, 'a', 'b', 'c', 'd', 0, 0, 0, 0, 0}));
  EXPECT_EQ(textOf(*texts), R"(["abc", "d", ""])");
  EXPECT_EQ(refusedArray(kDataStream, u"[0102, 03]"), "the items of '[0102, 03]' are not of one size");
}

TEST(ValueText, RefusesWhatIsNoCollection) {
  for (const auto* text : {u"", u"1, 2", u"[1", u"[1,]", u"[1, 2", u"[", u"]"}) {
    EXPECT_EQ(refusedArray(kUInt16, text),
              "'" + Utils::wstringToString(text) + "' is no collection, such as [1, 2] or [\"a\", \"b\"]");
  }
  for (const auto* text : {u"[\"a]", u"[\"a\" \"b\"]", u"[\"\\x\"]", u"[\"\\u00\"]", u"[\"\\]"}) {
    EXPECT_EQ(refusedArray(kUTF16String, text),
              "'" + Utils::wstringToString(text) + "' is no collection, such as [1, 2] or [\"a\", \"b\"]");
  }
  EXPECT_EQ(refusedArray(kUInt16, u"[1, x]"), "'x' is no whole number from 0 to 65535");
  EXPECT_EQ(refusedArray(kUInt16, u"[,1]"), "'' is no whole number from 0 to 65535");
  EXPECT_EQ(refusal(kArray, u"[1]"), "'[1]' is text for a collection, the type of whose items is not given");
  EXPECT_EQ(refusal([] { collectionFromText(kUInt8, kUInt8, u"[1]"); }),
            "'[1]' is text for something else than a collection");
  EXPECT_EQ(refusal(kNone, u"1"), "'1' is text for a value of no type");
}

TEST(ValueText, TakesEmptyTextsAndRunsOfOctetsForValues) {
  for (const auto type :
       {kUTF16String, kUTF8String, kISO7String, kISO8String, kUTF16, kDataStream, kDataValue, kUnknown}) {
    EXPECT_TRUE(hasEmptyText(type)) << name(type);
    EXPECT_EQ(reread(type, u""), "") << name(type);
  }
  for (const auto type : {kUInt8, kUUID, kRational, kBoolean, kStrongReference, kRGBALayout, kTimestamp}) {
    EXPECT_FALSE(hasEmptyText(type)) << name(type);
    EXPECT_NE(refusal(type, u""), "none") << name(type);
  }
}

TEST(ValueText, ChecksATextWithoutMakingAValue) {
  EXPECT_EQ(checkedText(kUInt8, u" 7 "), u"7");
  EXPECT_EQ(checkedText(kBoolean, u"true"), u"1");
  EXPECT_EQ(checkedText(kDataStream, u"0a 1b"), u"0a1b");
  EXPECT_EQ(checkedText(kUUID, u" x "), u"x");
  EXPECT_EQ(checkedText(kUTF16String, u" x "), u" x ");
  EXPECT_EQ(checkedText(kRational, u" x "), u" x ");
  EXPECT_EQ(checkedText(kVersionType, u"259"), u"259");
  EXPECT_EQ(refusal([] { checkedText(kVersionType, u"1.3"); }), "'1.3' is no whole number from 0 to 65535");
}

}  // namespace
}  // namespace Vantor::Types
