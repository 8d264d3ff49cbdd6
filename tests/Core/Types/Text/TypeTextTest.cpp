#include "Core/Types/Text/TypeText.h"

#include <gtest/gtest.h>

#include <random>

#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Text/ListText.h"
#include "Core/Types/ValueText.h"
#include "tests/Core/Types/Samples.h"

namespace Vantor::Types {
namespace {

using namespace Identifiers;

std::string textOf(const SimpleDataType& value) { return Utils::wstringToString(printValue(value)); }
std::string reread(Identifier type, std::u16string_view text) { return textOf(*parseValue(type, text)); }

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
  return refusal([&] { parseValue(type, text); });
}
std::string refusedArray(Identifier itemType, std::u16string_view text) {
  return refusal([&] { parseList(kArray, itemType, text); });
}

template <class T>
class PeoplesTextOfEveryType : public ::testing::Test {};
template <class Nothing, class... Listed>
struct TestTypes {
  using Types = ::testing::Types<Listed...>;
};
#define VANTOR_LIST_TYPE(Type, number, octets) , Type
using AllTypes = TestTypes<void VANTOR_FOR_EACH_TYPE(VANTOR_LIST_TYPE)>::Types;
#undef VANTOR_LIST_TYPE
TYPED_TEST_SUITE(PeoplesTextOfEveryType, AllTypes, TypeNames);

bool isList(Identifier type) { return type == kArray || type == kBatch; }

auto_ptr<SimpleDataType> readBack(Identifier type, std::u16string_view text) {
  return isList(type) ? parseList(type, kUnknown, text) : parseValue(type, text);
}

TYPED_TEST(PeoplesTextOfEveryType, IsReadBackAsAnEqualValue) {
  for (const auto& value : {Sample<TypeParam>::value(), Sample<TypeParam>::other()}) {
    const auto text = printValue(value);
    const auto read = readBack(TypeParam::kIdentifier, text);
    EXPECT_EQ(read->identifier(), TypeParam::kIdentifier);
    EXPECT_EQ(printValue(*read), text);
    // An empty collection of items without a fixed size does not show the size that it was made with.
    const bool isEmptyList = text == u"[]";
    EXPECT_TRUE(isEmptyList || read->equals(value)) << textOf(value);
  }
}

/// Random octets, of which small numbers are many, so that dates and versions are met.
Bytes randomOctets(std::mt19937& random, std::size_t size) {
  Bytes octets(size);
  const unsigned highest = random() % 2 == 0 ? 0xff : 0x10;
  for (auto& octet : octets) octet = static_cast<uint8>(random() % (highest + 1));
  return octets;
}

TYPED_TEST(PeoplesTextOfEveryType, GivesTheSameOctetsOfRandomValues) {
  constexpr auto kType = TypeParam::kIdentifier;
  std::mt19937 random(20261122);
  int decoded = 0;
  for (int i = 0; i < 2000 && !isList(kType); ++i) {
    const auto octets = randomOctets(random, typeSize(kType) != 0 ? typeSize(kType) : random() % 12);
    const auto value = Factories::fromBytes(kType, octets.data(), octets.size());
    if (value == nullptr) continue;
    ++decoded;
    const auto read = parseValue(kType, printValue(*value));
    ASSERT_TRUE(read->equals(*value)) << textOf(*value);
    // Texts are printed without their final NULs.
    ASSERT_TRUE(toBytes(*read) == octets || octets.back() == 0) << textOf(*value);
  }
  EXPECT_TRUE(decoded > 50 || isList(kType)) << decoded;
}

TYPED_TEST(PeoplesTextOfEveryType, ReadsItsExamples) {
  const auto* row = typeText(TypeParam::kIdentifier);
  ASSERT_EQ(row == nullptr, isList(TypeParam::kIdentifier));
  std::string rest = row == nullptr ? "" : row->examples;
  int read = row == nullptr ? 1 : 0;
  while (!rest.empty()) {
    const auto end = std::min(rest.find(", "), rest.find(" or "));
    EXPECT_NE(parseValue(TypeParam::kIdentifier, Utils::stringToWstring(rest.substr(0, end))), nullptr);
    ++read;
    if (end == std::string::npos) break;
    rest.erase(0, end + (rest[end] == ',' ? 2 : 4));
  }
  EXPECT_GT(read, 0);
}

TEST(TypeText, ReadsNumbersInDecimalAndHexadecimal) {
  EXPECT_EQ(reread(kUInt8, u" 255\n"), "255");
  EXPECT_EQ(reread(kUInt32, u"0x15010500"), "352388352");
  EXPECT_EQ(reread(kLength, u"-1"), "-1");
  EXPECT_EQ(refusal(kUInt8, u"256"), "'256' is not a whole number from 0 to 255; for example 25 or 0x19");
  EXPECT_EQ(refusal(kUInt8, u"0x100"), "'0x100' is not a whole number from 0 to 255; for example 25 or 0x19");
  EXPECT_EQ(refusal(kUInt8, u"0x-1"), "'0x-1' is not a whole number from 0 to 255; for example 25 or 0x19");
  EXPECT_EQ(refusal(kInt16, u"12abc"), "'12abc' is not a whole number from -32768 to 32767; for example 25 or 0x19");
  for (const auto& [type, least, most] :
       {std::tuple(kInt8, u"-128", u"127"), std::tuple(kInt64, u"-9223372036854775808", u"9223372036854775807"),
        std::tuple(kUInt64, u"0", u"18446744073709551615")}) {
    EXPECT_EQ(reread(type, least), Utils::wstringToString(least));
    EXPECT_EQ(reread(type, most), Utils::wstringToString(most));
  }
}

TEST(TypeText, ReadsBooleansAsWords) {
  for (const auto* text : {u"true", u"YES", u"On", u"1", u" true "}) EXPECT_EQ(reread(kBoolean, text), "true");
  for (const auto* text : {u"false", u"no", u"OFF", u"0"}) EXPECT_EQ(reread(kBoolean, text), "false");
  EXPECT_EQ(refusal(kBoolean, u"maybe"),
            "'maybe' is not true or false; for example true, false, yes, no, on, off, 1 or 0");
}

TEST(TypeText, TakesSlowedRatesForTheirFractions) {
  for (const auto& [text, printed] :
       std::vector<std::pair<const char16_t*, const char*>>{{u"29.97", "30000/1001"},
                                                            {u"29.970", "30000/1001"},
                                                            {u"29.97003", "30000/1001"},
                                                            {u"23.976", "24000/1001"},
                                                            {u"23.98", "24000/1001"},
                                                            {u"23.97", "24000/1001"},
                                                            {u"59.94", "60000/1001"},
                                                            {u"119.88", "120000/1001"},
                                                            {u"47.95", "48000/1001"},
                                                            {u"29.9", "299/10"},
                                                            {u"12.5", "25/2"},
                                                            {u"25.0", "25"},
                                                            {u"1.85", "37/20"},
                                                            {u"25", "25"},
                                                            {u"16:9", "16/9"},
                                                            {u" 16 / 9 ", "16/9"},
                                                            {u"0/0", "0/0"},
                                                            {u"-1/1", "-1"},
                                                            {u"48000", "48000"},
                                                            {u"30000/-1001", "30000/-1001"}}) {
    EXPECT_EQ(reread(kRational, text), printed);
  }
  for (const auto* text : {u"25/", u"/1", u"25/1/1", u"2147483648", u"2147483648.5", u"", u"25-1", u".5", u"5.", u"1e3",
                           u"99999999999.1", u"0.1234567891"}) {
    EXPECT_EQ(refusal(kRational, text), "'" + Utils::wstringToString(text) +
                                            "' is not a rate or ratio; for example 25, 30000/1001, 29.97 or 16:9");
  }
}

TEST(TypeText, ReadsVersionsWithWordsForTheRelease) {
  EXPECT_EQ(reread(kVersionType, u"1.3"), "1.3");
  EXPECT_EQ(reread(kVersionType, u"259"), "1.3") << "documents have it so";
  EXPECT_EQ(reread(kVersionType, u"1"), "1.0");
  for (const auto* text : {u"1.", u"256.0", u"65536", u"1.3.5", u"v1.3", u""}) {
    EXPECT_EQ(refusal(kVersionType, text), "'" + Utils::wstringToString(text) + "' is not a version; for example 1.3");
  }
  for (const auto& [text, printed] :
       std::vector<std::pair<const char16_t*, const char*>>{{u"1.2.3.4 release", "1.2.3.4 release"},
                                                            {u"1.2.3.4.1", "1.2.3.4 release"},
                                                            {u"1.2 Beta", "1.2.0.0 beta"},
                                                            {u"7", "7.0.0.0 unknown"},
                                                            {u"1.2.3.4.17", "1.2.3.4.17"},
                                                            {u"1.2.3 private build", "1.2.3.0 private"},
                                                            {u"1.2.3.4patched", "1.2.3.4 patch"},
                                                            {u"1.2.3.4 DEBUG", "1.2.3.4 debug"}}) {
    EXPECT_EQ(reread(kProductVersion, text), printed);
  }
  for (const auto* text : {u"1.2.3.4.5.6", u"1.2.3.4.65536", u"release", u"", u"1..2"}) {
    EXPECT_EQ(refusal(kProductVersion, text),
              "'" + Utils::wstringToString(text) + "' is not a version; for example 1.2.3.4 release or 1.2 beta");
  }
  EXPECT_EQ(refusal(kProductVersion, u"1.2 final"),
            "'1.2 final' is not a version (the words for releases are unknown, release, debug, patch, beta and "
            "private); for example 1.2.3.4 release or 1.2 beta");
}

TEST(TypeText, ReadsDatesAndTimesOfISO8601) {
  for (const auto& [text, printed] :
       std::vector<std::pair<const char16_t*, const char*>>{{u"2024-02-09T03:04:05.008", "2024-02-09T03:04:05.008"},
                                                            {u"2024-02-09T03:04:05.008Z", "2024-02-09T03:04:05.008"},
                                                            {u"2024-02-09 03:04:05", "2024-02-09T03:04:05.000"},
                                                            {u"2024-02-09T03:04", "2024-02-09T03:04:00.000"},
                                                            {u"2024-02-09", "2024-02-09T00:00:00.000"},
                                                            {u"20240209T030405Z", "2024-02-09T03:04:05.000"},
                                                            {u"20240209", "2024-02-09T00:00:00.000"},
                                                            {u"2024-02-09T03:04:05,5", "2024-02-09T03:04:05.500"},
                                                            {u"2024-02-09T03:04:05.999999", "2024-02-09T03:04:05.996"},
                                                            {u"2024-03-01T00:30:00+01:00", "2024-02-29T23:30:00.000"},
                                                            {u"2023-12-31T23:30:00-01:00", "2024-01-01T00:30:00.000"},
                                                            {u"2024-01-01T00:00:00+0530", "2023-12-31T18:30:00.000"},
                                                            {u"2024-02-09T03:04:05-08", "2024-02-09T11:04:05.000"},
                                                            {u"0000-00-00T00:00:00.000", "0000-00-00T00:00:00.000"},
                                                            {u"2016-12-31T23:59:60Z", "2016-12-31T23:59:60.000"},
                                                            {u"0x07E80209030405FF", "0x07E80209030405FF"}}) {
    EXPECT_EQ(reread(kTimestamp, text), printed);
  }
}

TEST(TypeText, RefusesDatesThatThereAreNot) {
  const std::string end = "; for example 2024-02-09T03:04:05.008Z or 2024-02-09";
  for (const auto& [text, reason] : std::vector<std::pair<const char16_t*, const char*>>{
           {u"2023-02-29", " (that month has no day 29)"},
           {u"2024-13-01", " (there is no month 13)"},
           {u"2024-00-01", " (there is no month 0)"},
           {u"2024-01-00", " (that month has no day 0)"},
           {u"2024-01-01T24:00:00", " (there is no hour 24)"},
           {u"2024-01-01T00:60:00", " (there is no minute 60)"},
           {u"2024-01-01T00:00:61", " (there is no second 61)"},
           {u"0000-01-01T00:00:00+01:00", " (in UTC, its year is beyond 0 to 9999)"},
           {u"0000-00-00T00:00:00+01:00", " (an unknown time has no time zone)"},
           {u"0x07E8", " (it has 2 octets, not 8)"},
           {u"24-02-09", ""},
           {u"2024-2-9", ""},
           {u"2024-02-0903:04", ""},
           {u"2024-02-09T", ""},
           {u"2024-02-09T03:04:05.", ""},
           {u"2024-02-09T03:04:05+25:00", ""},
           {u"2024-02-09T03:04:05 UTC", ""},
           {u"09.02.2024", ""},
           {u"now", ""},
           {u"", ""}}) {
    EXPECT_EQ(refusal(kTimestamp, text),
              "'" + Utils::wstringToString(text) + "' is not a date and time" + reason + end);
  }
}

TEST(TypeText, ReadsIdentifiersInEveryUsualSpelling) {
  const std::string dotted = "00.11.22.33.44.55.66.77.88.99.AA.BB.CC.DD.EE.FF";
  for (const auto* text :
       {u"00.11.22.33.44.55.66.77.88.99.AA.BB.CC.DD.EE.FF", u"urn:uuid:00112233-4455-6677-8899-aabbccddeeff",
        u"URN:UUID:00112233-4455-6677-8899-AABBCCDDEEFF", u"{00112233-4455-6677-8899-aabbccddeeff}",
        u"00112233-4455-6677-8899-aabbccddeeff", u"00112233445566778899aabbccddeeff",
        u"0x00112233445566778899aabbccddeeff", u"00 11 22 33 44 55 66 77 88 99 aa bb cc dd ee ff",
        u"00112233 44556677 8899aabb ccddeeff", u"00:11:22:33:44:55:66:77:88:99:aa:bb:cc:dd:ee:ff",
        u"{0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, 0x99, 0xaa, 0xbb, 0xcc, 0xdd, 0xee, 0xff}",
        u"00112233.44556677.8899aabb.ccddeeff", u" 00_11_22_33_44_55_66_77_88_99_aa_bb_cc_dd_ee_ff "}) {
    EXPECT_EQ(reread(kUUID, text), dotted);
    EXPECT_EQ(reread(kAUID, text), dotted);
    EXPECT_EQ(reread(kStrongReference, text), dotted);
  }
  EXPECT_EQ(reread(kUniversalLabel, u"urn:smpte:ul:00112233.44556677.8899aabb.ccddeeff"), dotted);
  EXPECT_EQ(reread(kAUID, u"urn:smpte:ul:00112233.44556677.8899aabb.ccddeeff"), dotted);
  for (const auto* text : {u"3c0a", u"3C.0A", u"0x3C0A", u"3c 0a"}) EXPECT_EQ(reread(kLocalTag, text), "3C.0A");
}

TEST(TypeText, SwapsTheHalvesOfLabelsThatAreWrittenAsUUIDs) {
  const std::string label = "06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00";
  for (const auto type : {kAUID, kUniversalLabel}) {
    EXPECT_EQ(reread(type, u"urn:uuid:0d010201-0101-0900-060e-2b3404010101"), label);
    EXPECT_EQ(reread(type, u"{0D010201-0101-0900-060E-2B3404010101}"), label);
    EXPECT_EQ(reread(type, u"060e2b34-0401-0101-0d01-020101010900"), label) << "a label in its own order";
    EXPECT_EQ(reread(type, u"0d010201.01010900.060e2b34.04010101"), "0D.01.02.01.01.01.09.00.06.0E.2B.34.04.01.01.01")
        << "octets as they are stored";
  }
  EXPECT_EQ(reread(kUUID, u"urn:uuid:0d010201-0101-0900-060e-2b3404010101"),
            "0D.01.02.01.01.01.09.00.06.0E.2B.34.04.01.01.01");
}

TEST(TypeText, ReadsUMIDsAsOtherProgramsPrintThem) {
  const std::string dotted =
      "06.0A.2B.34.01.01.01.05.01.01.0D.43.13.00.00.00.D3.B6.D3.D7.C1.A1.4B.4F.8C.0F.01.23.45.67.89.AB";
  for (const auto* text : {u"0x060A2B340101010501010D4313000000D3B6D3D7C1A14B4F8C0F0123456789AB",
                           u"060A2B34 01010105 01010D43 13000000 D3B6D3D7 C1A14B4F 8C0F0123 456789AB",
                           u"urn:smpte:umid:060a2b34.01010105.01010d43.13000000.d3b6d3d7.c1a14b4f.8c0f0123.456789ab",
                           u"060A2B340101010501010D43-13-000000-D3B6D3D7C1A14B4F8C0F0123456789AB"}) {
    EXPECT_EQ(reread(kUMID32, text), dotted);
  }
}

TEST(TypeText, GivesTheReasonWhyATextIsNoIdentifier) {
  const std::string uuids =
      "; for example urn:uuid:5a1fbd9c-3a52-4cd2-9e3f-0123456789ab or 5A.1F.BD.9C.3A.52.4C.D2.9E.3F.01.23.45.67.89.AB";
  EXPECT_EQ(refusal(kUUID, u"x"), "'x' is not a UUID" + uuids);
  EXPECT_EQ(refusal(kUUID, u""), "'' is not a UUID" + uuids);
  EXPECT_EQ(refusal(kUUID, u"00 11"), "'00 11' is not a UUID (it has 2 octets, not 16)" + uuids);
  EXPECT_EQ(refusal(kUUID, u"001"), "'001' is not a UUID (an octet lacks its second digit)" + uuids);
  EXPECT_EQ(refusal(kUUID, u"urn:smpte:ul:060e2b34.04010101.0d010201.01010900"),
            "'urn:smpte:ul:060e2b34.04010101.0d010201....' is not a UUID (that is a universal label)" + uuids);
  EXPECT_EQ(refusal(kStrongReference, u"x"), "'x' is not the InstanceUID of a set" + uuids);
  EXPECT_EQ(refusal(kUniversalLabel, u"{00112233-4455-6677-8899-aabbccddeeff}").substr(0, 75),
            "'{00112233-4455-6677-8899-aabbccddeeff}' is not a label (that is a UUID); f");
  EXPECT_EQ(refusal(kLocalTag, u"3C.0"),
            "'3C.0' is not a local tag (an octet lacks its second digit); for example 3C.0A or 0x3C0A");
}

TEST(TypeText, KeepsTextsAsTheyAreButThoseInQuotes) {
  EXPECT_EQ(reread(kUTF16String, u" a \"b\"\n"), " a \"b\"\n");
  EXPECT_EQ(reread(kUTF8String, u"\u00e4 \U0001F600"), "\u00e4 \U0001F600");
  EXPECT_EQ(reread(kISO8String, u"\u00e4"), "\u00e4");
  EXPECT_EQ(reread(kUTF16String, uR"("a \"b\"\u000A")"), "a \"b\"\n");
  EXPECT_EQ(reread(kUTF16String, uR"("\"a\"")"), R"("\"a\"")") << "quoted once more, since it has quotes of its own";
  EXPECT_EQ(reread(kUTF16String, uR"("a" and "b")"), R"("a" and "b")");
  EXPECT_EQ(reread(kUTF16String, u"\"a"), "\"a");
  EXPECT_EQ(reread(kUTF16String, u""), "");
  EXPECT_EQ(
      refusal(kISO7String, u"\u00e4"),
      "'\u00e4' is not a text of ISO 7-bit characters (this encoding lacks a character of it); for example A title");
  EXPECT_EQ(refusal(kUTF16String, wstring(1, u'\xd800')),
            "'\uFFFD' is not a text (it holds half a character); for example A title");
  EXPECT_EQ(refusal(kUTF8String, u"\"a\\u0000b\""),
            "'\"a\\u0000b\"' is not a text (it holds a NUL); for example A title");
  EXPECT_EQ(reread(kUTF16, u"A"), "A");
  EXPECT_EQ(reread(kUTF16, u" "), "\" \"");
  EXPECT_EQ(reread(kUTF16, u""), "\"\"");
  EXPECT_EQ(reread(kUTF16, u"\"\\uD800\""), "\"\\uD800\"");
  EXPECT_EQ(refusal(kUTF16, u"ab"), "'ab' is not one UTF-16 code unit; for example A");
}

TEST(TypeText, ReadsOctetsInHexadecimalDigits) {
  for (const auto* text : {u"0a1B", u"0a 1B\n", u"0x0A1B", u"0x0A 0x1B", u"{0x0A, 0x1B}", u"0a-1b", u"0a:1b"}) {
    EXPECT_EQ(reread(kDataStream, text), "0A1B");
  }
  EXPECT_EQ(reread(kUnknown, u""), "");
  EXPECT_EQ(reread(kUnknown, u"no octets"), "");
  EXPECT_EQ(refusal(kDataValue, u"0g"), "'0g' is not a run of octets; for example 0A1B or 0x0A1B");
  EXPECT_EQ(refusal(kDataStream, u"0a1"),
            "'0a1' is not a run of octets (an octet lacks its second digit); for example 0A1B or 0x0A1B");
  EXPECT_EQ(refusal(kJ2KPictureComponent, u"0901"),
            "'0901' is not a picture component of 3 octets (it has 2 octets, not 3); for example 090101");
}

TEST(TypeText, CutsWhatItQuotes) {
  EXPECT_EQ(refusal(kVersionType, std::u16string(41, u'x')),
            "'" + std::string(40, 'x') + "...' is not a version; for example 1.3");
}

std::string rereadArray(Identifier itemType, std::u16string_view text) {
  return textOf(*parseList(kArray, itemType, text));
}

TEST(ListText, IsReadItemByItem) {
  EXPECT_EQ(rereadArray(kUInt16, u" [ 1,2 , 3 ] "), "[1, 2, 3]");
  EXPECT_EQ(rereadArray(kRational, u"[25, 29.97]"), "[25, 30000/1001]");
  EXPECT_EQ(rereadArray(kUInt16, u"[]"), "[]");
  EXPECT_EQ(rereadArray(kUnknown, u"[{0x0A, 0x1B}, 0C0D]"), "[0A1B, 0C0D]");
  EXPECT_EQ(toBytes(*parseList(kBatch, kUInt16, u"[]")), (Bytes{0, 0, 0, 0, 0, 0, 0, 2}));
  EXPECT_EQ(toBytes(*parseList(kBatch, kUInt8, u"[7, 8]")), (Bytes{0, 0, 0, 2, 0, 0, 0, 1, 7, 8}));
}

TEST(ListText, HasTextsInQuotes) {
  EXPECT_EQ(rereadArray(kUTF16String, u"[a, b c]"), R"(["a", "b c"])");
  EXPECT_EQ(rereadArray(kUTF8String, uR"(["a, \"b\"", "\\\u000A]"])"), R"(["a, \"b\"", "\\\u000A]"])");
  EXPECT_EQ(rereadArray(kUTF8String, uR"(["\"a\""])"), R"(["\"a\""])");
  EXPECT_EQ(rereadArray(kUTF16, u"[\" \", \"\", A]"), "[\" \", \"\", \"A\"]");
}

TEST(ListText, FillsShorterTextsWithNULs) {
  const auto texts = parseList(kArray, kISO7String, u"[\"abc\", \"d\", \"\"]");
  EXPECT_EQ(toBytes(*texts), (Bytes{0, 0, 0, 3, 0, 0, 0, 3, 'a', 'b', 'c', 'd', 0, 0, 0, 0, 0}));
  EXPECT_EQ(textOf(*texts), R"(["abc", "d", ""])");
  EXPECT_EQ(refusedArray(kDataStream, u"[0102, 03]"), "the items of '[0102, 03]' are not of one size");
}

TEST(ListText, RefusesWhatIsNoListWithAnExampleOfItsItems) {
  for (const auto* text : {u"", u"1, 2", u"[1", u"[1,]", u"[1, 2", u"[", u"]"}) {
    EXPECT_EQ(refusedArray(kUInt16, text), "'" + Utils::wstringToString(text) + "' is not a list; for example [25]");
  }
  for (const auto* text : {u"[\"a]", u"[\"a\" \"b\"]", u"[\"\\x\"]", u"[\"\\u00\"]", u"[\"\\]"}) {
    EXPECT_EQ(refusedArray(kUTF16String, text),
              "'" + Utils::wstringToString(text) + "' is not a list; for example [\"a\", \"b\"]");
  }
  EXPECT_EQ(refusedArray(kUInt16, u"[1, x]"), "'x' is not a whole number from 0 to 65535; for example 25 or 0x19");
  EXPECT_EQ(refusedArray(kUInt16, u"[,1]"), "'' is not a whole number from 0 to 65535; for example 25 or 0x19");
  EXPECT_EQ(refusal(kArray, u"[1]"), "'[1]' is text for a value whose type is not given");
  EXPECT_EQ(refusal(kNone, u"1"), "'1' is text for a value whose type is not given");
}

}  // namespace
}  // namespace Vantor::Types
