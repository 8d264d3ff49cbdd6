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
  return refusal([&] { checkedText(type, text); });
}

TEST(ValueText, WritesNumbersInDecimalAndBooleansAsDigits) {
  EXPECT_EQ(textOf(Int8(int8{-128})), "-128");
  EXPECT_EQ(textOf(UInt64(~uint64{0})), "18446744073709551615");
  EXPECT_EQ(textOf(Boolean(true)) + textOf(Boolean(false)), "10");
}

TEST(ValueText, WritesIdentifiersInDottedPairsAndOthersInHexadecimalDigits) {
  EXPECT_EQ(textOf(LocalTag(0x3c0a)), "3C.0A");
  EXPECT_EQ(textOf(StrongReference()), "00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00");
  EXPECT_EQ(textOf(DataStream(Bytes{0x0a, 0x1b})), "0A1B");
  EXPECT_EQ(textOf(J2KPictureComponent(uint8{9}, uint8{1}, uint8{2})), "090102");
}

TEST(ValueText, WritesTextsAsTheyAre) {
  EXPECT_EQ(textOf(UTF16String(wstring(u" \u00e4 \"b\"\n"))), " \u00e4 \"b\"\n");
  EXPECT_EQ(textOf(UTF16(uint16{0x20})), " ");
  EXPECT_EQ(textOf(UTF16()), "");
}

TEST(ValueText, HasEmptyValuesForTextsAndRunsOfOctets) {
  for (const auto type : {kUTF16String, kUTF8String, kISO7String, kISO8String, kDataStream, kDataValue, kUnknown}) {
    const auto value = emptyValue(type);
    ASSERT_NE(value, nullptr) << name(type);
    EXPECT_EQ(value->identifier(), type);
    EXPECT_EQ(value->encodedSize(), 0u);
  }
  EXPECT_EQ(toBytes(*emptyValue(kUTF16)), (Bytes{0, 0}));
  for (const auto type : {kUInt8, kUUID, kRational, kBoolean, kStrongReference, kRGBALayout, kTimestamp, kArray}) {
    EXPECT_EQ(emptyValue(type), nullptr) << name(type);
  }
}

TEST(ValueText, RefusesTextsThatDocumentsDoNotHave) {
  EXPECT_EQ(refusal(kUInt8, u"256"), "'256' is no whole number from 0 to 255");
  EXPECT_EQ(refusal(kInt16, u"12abc"), "'12abc' is no whole number from -32768 to 32767");
  EXPECT_EQ(refusal(kPosition, u""), "'' is no whole number from -9223372036854775808 to 9223372036854775807");
  EXPECT_EQ(refusal(kBoolean, u"yes"), "'yes' is neither 0 nor 1, neither false nor true");
  EXPECT_EQ(refusal(kAUID, u"00 11"), "'00 11' is more than one identifier");
  EXPECT_EQ(refusal(kISO7String, u"\u00e4"),
            "'\u00e4' is no ISO 7-bit text: it has characters that this encoding lacks");
  EXPECT_EQ(refusal(kUTF16, u"ab"), "'ab' is not one UTF-16 code unit");
  EXPECT_EQ(refusal(kDataValue, u"0g"), "'0g' is no run of octets: these are hexadecimal digits, two to an octet");
  EXPECT_EQ(refusal(kDataStream, u"0a1"), "'0a1' is no run of octets: the last of them lacks its second digit");
}

TEST(ValueText, CutsWhatItQuotes) {
  EXPECT_EQ(refusal(kBoolean, std::u16string(41, u'x')),
            "'" + std::string(40, 'x') + "...' is neither 0 nor 1, neither false nor true");
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
