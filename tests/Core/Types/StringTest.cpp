#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "Core/Platform/Strings.h"
#include "tests/Core/Types/ValueBytes.h"

namespace Vantor::Types {
namespace {

wstring textOf(const uint16* text) { return Platform::utf16ToWstring(text); }

template <class T>
class TextTest : public ::testing::Test {};
using Texts = ::testing::Types<ISO7String, ISO8String, UTF8String, UTF16String>;
TYPED_TEST_SUITE(TextTest, Texts, TypeNames);

TYPED_TEST(TextTest, OfNoOctetsIsTheEmptyText) {
  const auto value = Factories::fromBytes(TypeParam::kIdentifier, nullptr, 0);
  ASSERT_NE(value, nullptr);
  const auto& text = dynamic_cast<const TypeParam&>(*value);
  EXPECT_EQ(text.value()[0], 0);
  EXPECT_EQ(text.encodedSize(), 0u);
  EXPECT_NE(text.rawBuffer(), nullptr);
  EXPECT_EQ(text, TypeParam());
}

TYPED_TEST(TextTest, OfNothingButNulsIsTheEmptyTextAndWritesThem) {
  const auto text = fromBytes<TypeParam>(Bytes(6));
  EXPECT_EQ(text.value()[0], 0);
  EXPECT_EQ(toBytes(text), Bytes(6));
  EXPECT_EQ(text, TypeParam());
  EXPECT_TRUE(text.equals(TypeParam()));
}

TYPED_TEST(TextTest, KeepsItsOctetsWhenMovedFrom) {
  TypeParam text;
  const TypeParam taken = std::move(text);
  EXPECT_EQ(text.encodedSize(), 0u);  // NOLINT(bugprone-use-after-move): that it stays whole is what is tested
  ASSERT_NE(text.value(), nullptr);
  EXPECT_EQ(text.value()[0], 0);
  EXPECT_EQ(taken, text);
}

TYPED_TEST(TextTest, MadeFromANullPointerIsEmpty) {
  EXPECT_EQ(TypeParam(nullptr), TypeParam());
  EXPECT_EQ(TypeParam(nullptr).encodedSize(), 0u);
}

TEST(ISO7String, KeepsFinalNulsButEqualsTheTextWithoutThem) {
  const Bytes padded = {'a', 'b', 0, 0, 0};
  const auto text = fromBytes<ISO7String>(padded);
  EXPECT_STREQ(text.value(), "ab");
  EXPECT_EQ(toBytes(text), padded);
  EXPECT_EQ(text, ISO7String("ab"));
  EXPECT_NE(text, ISO7String("abc"));
}

TEST(ISO7String, WritesNoFinalNulWhenMade) { EXPECT_EQ(toBytes(ISO7String("ab")), (Bytes{'a', 'b'})); }

TEST(ISO7String, IsMadeUpToTheFirstNul) { EXPECT_STREQ(ISO7String(std::string("ab\0cd", 5)).value(), "ab"); }

TEST(ISO7String, ReadsNoOctetAbove7F) {
  EXPECT_TRUE(decodes<ISO7String>({0x01, 0x7f}));
  EXPECT_FALSE(decodes<ISO7String>({'a', 0x80}));
  EXPECT_FALSE(decodes<ISO7String>({'a', 0x00, 0x80}));
}

TEST(ISO8String, ReadsEveryOctet) {
  Bytes all;
  for (int octet = 1; octet <= 0xff; ++octet) all.push_back(static_cast<uint8>(octet));
  const auto text = fromBytes<ISO8String>(all);
  EXPECT_EQ(std::string(text.value()).size(), 255u);
  EXPECT_EQ(ISO8String(text.value()), text);
  EXPECT_EQ(toBytes(text), all);
}

TEST(UTF16String, ReadsBigEndianUnits) {
  const Bytes bytes = {0x00, 'A', 0x20, 0xac, 0xd8, 0x3d, 0xde, 0x00};
  const auto text = fromBytes<UTF16String>(bytes);
  EXPECT_EQ(textOf(text.value()), u"A\u20ac\U0001F600");
  EXPECT_EQ(text.length(), 4u);
  EXPECT_EQ(toBytes(text), bytes);
}

TEST(UTF16String, KeepsFinalNulsButEqualsTheTextWithoutThem) {
  const Bytes padded = {0x00, 'A', 0x00, 0x00, 0x00, 0x00};
  const auto text = fromBytes<UTF16String>(padded);
  EXPECT_EQ(textOf(text.value()), u"A");
  EXPECT_EQ(toBytes(text), padded);
  EXPECT_EQ(text, UTF16String(wstring(u"A")));
  EXPECT_EQ(toBytes(UTF16String(wstring(u"A"))), (Bytes{0x00, 'A'}));
}

TEST(UTF16String, ReadsAByteOrderMarkAsACharacter) {
  const Bytes marked = {0xfe, 0xff, 0x00, 'A'};
  EXPECT_EQ(textOf(fromBytes<UTF16String>(marked).value()), u"\ufeffA");
  EXPECT_EQ(toBytes(fromBytes<UTF16String>(marked)), marked);
}

TEST(UTF16String, ReadsAnOctetOfZeroWithinAUnit) {
  const Bytes bytes = {0x01, 0x00, 0x00, 0x01};
  EXPECT_EQ(textOf(fromBytes<UTF16String>(bytes).value()), u"\u0100\u0001");
}

TEST(UTF16String, IsMadeFromNulTerminatedUnits) {
  const uint16 units[] = {'A', 0x20ac, 0, 'B'};
  EXPECT_EQ(toBytes(UTF16String(units)), (Bytes{0x00, 'A', 0x20, 0xac}));
  EXPECT_EQ(toBytes(UTF16String(wstring(u"A\0B", 3))), (Bytes{0x00, 'A'}));
}

TEST(UTF16String, RefusesASurrogateAlone) {
  for (const wstring& text : {wstring(1, char16_t{0xd83d}), wstring(1, char16_t{0xde00}) + u"a"}) {
    EXPECT_THROW(UTF16String{text}, Exceptions::InvalidFormat);
  }
}

TEST(UTF8String, HandsOverUTF16AndWritesUTF8) {
  const Bytes bytes = {'A', 0xc3, 0xa9, 0xe2, 0x82, 0xac, 0xf0, 0x9f, 0x98, 0x80};
  const auto text = fromBytes<UTF8String>(bytes);
  EXPECT_EQ(textOf(text.value()), u"A\u00e9\u20ac\U0001F600");
  EXPECT_EQ(text.length(), 5u);
  EXPECT_EQ(toBytes(UTF8String(text.value())), bytes);
}

TEST(UTF8String, KeepsFinalNulsButEqualsTheTextWithoutThem) {
  const Bytes padded = {0xc3, 0xa9, 0x00};
  const auto text = fromBytes<UTF8String>(padded);
  EXPECT_EQ(textOf(text.value()), u"\u00e9");
  EXPECT_EQ(toBytes(text), padded);
  EXPECT_EQ(text, UTF8String(wstring(u"\u00e9")));
}

TEST(UTF8String, RoundTripsTheEdgesOfEachLength) {
  for (const char32_t point :
       {0x1u, 0x7fu, 0x80u, 0x7ffu, 0x800u, 0xd7ffu, 0xe000u, 0xfffeu, 0xffffu, 0x10000u, 0x10ffffu}) {
    wstring text;
    if (point < 0x10000) {
      text = wstring(1, static_cast<char16_t>(point));
    } else {
      text = {static_cast<char16_t>(0xd7c0 + (point >> 10)), static_cast<char16_t>(0xdc00 + (point & 0x3ff))};
    }
    const auto read = fromBytes<UTF8String>(toBytes(UTF8String(text)));
    EXPECT_EQ(textOf(read.value()), text) << static_cast<uint32>(point);
  }
}

TEST(UTF8String, RefusesASurrogateAloneAndNamesTheType) {
  try {
    UTF8String text(wstring(u"ab") + char16_t{0xd800});
    FAIL() << "made " << text.encodedSize() << " octets";
  } catch (const Exceptions::InvalidFormat& error) {
    EXPECT_NE(error.message().find("'ab"), std::string::npos) << error.message();
    EXPECT_NE(error.message().find("UTF8String"), std::string::npos) << error.message();
  }
  EXPECT_THROW(UTF8String(wstring(1, char16_t{0xdfff})), Exceptions::InvalidFormat);
  EXPECT_THROW(UTF8String(wstring(2, char16_t{0xd800})), Exceptions::InvalidFormat);
}

TEST(Texts, MayBeLongerThan65535Octets) {
  const std::string text(70001, 'x');
  EXPECT_EQ(ISO8String(text).encodedSize(), 70001u);
  EXPECT_EQ(std::string(fromBytes<ISO8String>(toBytes(ISO8String(text))).value()), text);
  EXPECT_EQ(UTF16String(wstring(70001, u'x')).encodedSize(), 140002u);
  EXPECT_EQ(UTF8String(wstring(70001, u'\u20ac')).encodedSize(), 210003u);
}

}  // namespace
}  // namespace Vantor::Types
