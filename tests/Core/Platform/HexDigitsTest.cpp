#include "Core/Platform/HexDigits.h"

#include <gtest/gtest.h>

#include <string>

namespace Vantor::Platform {
namespace {

constexpr uint8 kOctets[] = {0x00, 0x9A, 0xF0, 0xFF};

TEST(HexDigits, AreTwoAnOctetInEitherCase) {
  EXPECT_EQ(hexText<wstring>(kOctets, 4), u"009AF0FF");
  EXPECT_EQ(hexText<std::string>(kOctets, 4, DigitCase::kLower), "009af0ff");
  EXPECT_EQ(hexText<std::string>(nullptr, 0), "");
}

TEST(HexDigits, OfANumberAreAllThatItsTypeHas) {
  EXPECT_EQ(hexNumber<std::string>(uint16{0x3C0A}, DigitCase::kLower), "3c0a");
  EXPECT_EQ(hexNumber<std::string>(uint16{7}), "0007");
  EXPECT_EQ(hexNumber<wstring>(uint64{0x0123456789ABCDEF}), u"0123456789ABCDEF");
}

TEST(HexDigits, HaveTheirValueInEitherCase) {
  const std::u16string digits = u"0123456789abcdef", upper = u"0123456789ABCDEF";
  for (int value = 0; value < 16; ++value) {
    EXPECT_EQ(hexDigit(digits[static_cast<std::size_t>(value)]), value);
    EXPECT_EQ(hexDigit(upper[static_cast<std::size_t>(value)]), value);
  }
  for (const char32_t unit : {U'/', U':', U'@', U'G', U'`', U'g', U'\0', U'\u0130', U'\uFF10', U'\U00010030'}) {
    EXPECT_EQ(hexDigit(unit), -1) << static_cast<uint32>(unit);
    EXPECT_LT(hexOctet(unit, U'0'), 0) << static_cast<uint32>(unit);
    EXPECT_LT(hexOctet(U'0', unit), 0) << static_cast<uint32>(unit);
  }
  EXPECT_EQ(hexDigit(static_cast<char32_t>('\xB0')), -1);
}

TEST(HexDigits, AreReadInPairs) {
  EXPECT_EQ(bytesFromHex(u"009aF0Ff"), Bytes(kOctets, kOctets + 4));
  EXPECT_EQ(bytesFromHex(u""), Bytes());
  for (const char16_t* const text : {u"0", u"009", u"0g", u"g0", u"00 1", u" 00", u"0x00", u"-1"}) {
    EXPECT_EQ(bytesFromHex(text), std::nullopt);
  }
}

TEST(HexDigits, AreReadAsANumberOfThatManyOctets) {
  EXPECT_EQ(numberFromHex<uint16>("3c0A"), 0x3c0a);
  EXPECT_EQ(numberFromHex<uint64>("FFFFFFFFFFFFFFFE"), 0xfffffffffffffffe);
  for (const char* const text : {"", "3c0", "3c0a0", "3c0g", "0x3c", " 3c0", "-001"}) {
    EXPECT_EQ(numberFromHex<uint16>(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace Vantor::Platform
