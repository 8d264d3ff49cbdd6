#include "Core/Comparison/ValueText.h"

#include <gtest/gtest.h>

#include "tests/Core/Metadata/TestPartition.h"

namespace Vantor {
namespace {

TEST(ValueText, ShowsNumbersInDecimal) {
  EXPECT_EQ(valueText(Types::Int8(int8{-5})), "-5");
  EXPECT_EQ(valueText(Types::UInt8(uint8{200})), "200");
  EXPECT_EQ(valueText(Types::Length(-1)), "-1");
  EXPECT_EQ(valueText(Types::UInt64(~uint64{0})), "18446744073709551615");
  EXPECT_EQ(valueText(Types::UTF16(uint16{0x41})), "A");
  EXPECT_EQ(valueText(Types::Boolean(true)), "true");
  EXPECT_EQ(valueText(Types::Boolean(false)), "false");
}

TEST(ValueText, ShowsRecordsAsPeopleWriteThem) {
  EXPECT_EQ(valueText(Types::Rational(30000, -1001)), "30000/-1001");
  EXPECT_EQ(valueText(Types::VersionType(uint8{1}, uint8{3})), "1.3");
  EXPECT_EQ(valueText(Types::ProductVersion(uint16{1}, uint16{2}, uint16{3}, uint16{4}, Types::ReleaseVersion::kBeta)),
            "1.2.3.4 beta");
  EXPECT_EQ(valueText(Types::Timestamp(uint16{2024}, uint8{2}, uint8{9}, uint8{3}, uint8{4}, uint8{5}, uint16{8})),
            "2024-02-09T03:04:05.008");
  EXPECT_EQ(valueText(Types::J2KPictureComponent(uint8{9}, uint8{1}, uint8{2})), "090102");
}

TEST(ValueText, ShowsIdentifiersInDottedPairs) {
  EXPECT_EQ(valueText(uid(0xab)), "00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.AB");
  EXPECT_EQ(valueText(Types::StrongReference(uid(1))), "00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.01");
  EXPECT_EQ(valueText(Types::LocalTag(0x3c0a)), "3C.0A");
}

TEST(ValueText, QuotesTextsWithoutTheirFinalNULs) {
  EXPECT_EQ(valueText(Types::UTF16String(wstring(u"\u00e4 \U0001F600"))), "\"\u00e4 \U0001F600\"");
  EXPECT_EQ(valueText(*Types::UTF16String::decode(hex("0041 0000").data(), 4)), "\"A\"");
  EXPECT_EQ(valueText(Types::UTF8String(wstring())), "\"\"");
  EXPECT_EQ(valueText(Types::ISO7String("a\"b\\c")), "\"a\\\"b\\\\c\"");
  EXPECT_EQ(valueText(Types::ISO8String("\xe4")), "\"\u00e4\"");
}

TEST(ValueText, KeepsControlCharactersOutOfALine) {
  EXPECT_EQ(valueText(Types::UTF16String(wstring(u"a\nb\x1b[0m\x7f\x85\u2028"))),
            "\"a\\u000Ab\\u001B[0m\\u007F\\u0085\\u2028\"");
}

TEST(ValueText, CutsLongTextsBetweenCharacters) {
  const std::string letters(399, 'x');
  EXPECT_EQ(valueText(Types::ISO7String((letters + "y").c_str())), "\"" + letters + "y\"");
  EXPECT_EQ(valueText(Types::ISO7String((letters + "yz").c_str())), "\"" + letters + "y\"... (401 code units)");
  const auto split = wstring(399, u'x') + u"\U0001F600";
  EXPECT_EQ(valueText(Types::UTF16String(split)), "\"" + letters + "\"... (401 code units)");
}

TEST(ValueText, ShowsOctetsInHexadecimalAndCutsThem) {
  EXPECT_EQ(valueText(Types::DataStream(hex("01ab"))), "01AB");
  EXPECT_EQ(valueText(Types::Unknown(Bytes())), "no octets");
  EXPECT_EQ(valueText(Types::Unknown(Bytes(200, 0xcd))), hexOf(Bytes(200, 0xcd)));
  EXPECT_EQ(valueText(Types::Unknown(Bytes(201, 0xcd))), hexOf(Bytes(200, 0xcd)) + "... (201 octets)");
}

TEST(ValueText, CutsLongCollections) {
  Types::Array numbers(2);
  EXPECT_EQ(valueText(numbers), "[]");
  for (const uint16 number : {uint16{1}, uint16{2}, uint16{3}, uint16{4}}) {
    numbers.append(std::make_unique<Types::UInt16>(number));
  }
  EXPECT_EQ(valueText(numbers), "[1, 2, 3, 4]");
  for (int i = 0; i < 200; ++i) numbers.append(std::make_unique<Types::UInt16>(uint16{55555}));
  const auto text = valueText(numbers);
  EXPECT_EQ(text.substr(0, 24), "[1, 2, 3, 4, 55555, 5555");
  EXPECT_EQ(text.substr(text.size() - 16), "... (204 items)]");
  EXPECT_LT(text.size(), 430u);
}

}  // namespace
}  // namespace Vantor
