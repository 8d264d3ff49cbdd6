#include "Core/Platform/Strings.h"

#include <gtest/gtest.h>

namespace Vantor {
namespace {

TEST(PlatformStrings, NarrowOneOctetPerCodeUnit) {
  EXPECT_EQ(Platform::wstringToString(wstring(u"A\u00E9\u00FF")), "A\xE9\xFF");
}

TEST(PlatformStrings, NarrowACodeUnitBeyondLatin1ToAQuestionMark) {
  EXPECT_EQ(Platform::wstringToString(wstring(u"\u0100\U0001F600")), "???");
}

TEST(PlatformStrings, WidenEveryOctetToTheCodeUnitOfTheSameNumber) {
  std::string all;
  for (int octet = 0; octet < 256; ++octet) all.push_back(static_cast<char>(octet));
  const wstring wide = Platform::stringToWstring(all);
  ASSERT_EQ(wide.size(), 256u);
  EXPECT_EQ(wide[0x7F], 0x7F);
  EXPECT_EQ(wide[0xFF], 0xFF);
  EXPECT_EQ(Platform::wstringToString(wide), all);
}

TEST(PlatformStrings, KeepEmbeddedNuls) {
  EXPECT_EQ(Platform::stringToWstring(std::string("a\0b", 3)), wstring(u"a\0b", 3));
}

TEST(Utf16ToWstring, StopsAtTheFirstNul) {
  const uint16 text[] = {'a', 0x0100, 0xD83D, 0, 'b', 0};
  const char16_t expected[] = {u'a', 0x0100, 0xD83D};
  EXPECT_EQ(Platform::utf16ToWstring(text), wstring(expected, 3));
}

TEST(Utf16ToWstring, CopiesAsManyUnitsAsTold) {
  const uint16 text[] = {'a', 0, 'b'};
  EXPECT_EQ(Platform::utf16ToWstring(text, 3), wstring(u"a\0b", 3));
}

TEST(Utf16ToWstring, GivesAnEmptyStringForANullPointer) {
  EXPECT_TRUE(Platform::utf16ToWstring(nullptr).empty());
  EXPECT_TRUE(Platform::utf16ToWstring(nullptr, 0).empty());
}

TEST(UtilsStrings, WriteUtf8OfOneToFourOctets) {
  EXPECT_EQ(Utils::wstringToString(wstring(u"A\u00E9\u20AC\U0001F600")), "A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST(UtilsStrings, WriteTheFirstAndLastCodePointThatNeedsASurrogatePair) {
  EXPECT_EQ(Utils::wstringToString(wstring(u"\U00010000")), "\xF0\x90\x80\x80");
  EXPECT_EQ(Utils::wstringToString(wstring(u"\U0010FFFF")), "\xF4\x8F\xBF\xBF");
}

TEST(UtilsStrings, ReplaceEachUnpairedSurrogate) {
  const char16_t highThenLetter[] = {0xD800, u'a'};
  const char16_t lowThenHigh[] = {0xDC00, 0xD800};
  EXPECT_EQ(Utils::wstringToString(wstring(highThenLetter, 2)),
            "\xEF\xBF\xBD"
            "a");
  EXPECT_EQ(Utils::wstringToString(wstring(lowThenHigh, 2)), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(UtilsStrings, ReadUtf8OfOneToFourOctets) {
  EXPECT_EQ(Utils::stringToWstring("A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), u"A\u00E9\u20AC\U0001F600");
}

TEST(UtilsStrings, ReplaceIllFormedUtf8) {
  EXPECT_EQ(Utils::stringToWstring("a\x80z"), u"a\uFFFDz");
  EXPECT_EQ(Utils::stringToWstring("a\xE2\x82"), u"a\uFFFD");
}

TEST(UtilsStrings, GiveEmptyTextForEmptyText) {
  EXPECT_EQ(Utils::wstringToString(wstring()), "");
  EXPECT_TRUE(Utils::stringToWstring("").empty());
}

}  // namespace
}  // namespace Vantor
