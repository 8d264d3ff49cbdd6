#include "XMLUtils/UnicodeString.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>

#include "XMLUtils/Strings.h"

namespace Vantor::XMLUtils {
namespace {

TEST(UnicodeString, ReadsOctetsAsIso88591) {
  EXPECT_EQ(UnicodeString("\xE9\x80").toWstring(), u"\u00E9\u0080");
  EXPECT_EQ(UnicodeString(std::string("a\0b", 3)).toWstring(), wstring(u"a\0b", 3));
}

TEST(UnicodeString, TakesEveryFormOfUtf16) {
  const uint16 units[] = {'a', 0xD83D, 0xDE00, 0};
  const wstring expected = u"a\U0001F600";
  EXPECT_EQ(UnicodeString(units).toWstring(), expected);
  EXPECT_EQ(UnicodeString(u"a\U0001F600").toWstring(), expected);
  EXPECT_EQ(UnicodeString(expected).toWstring(), expected);
}

TEST(UnicodeString, TakesNullForNothing) {
  EXPECT_TRUE(UnicodeString(static_cast<const char*>(nullptr)).empty());
  EXPECT_TRUE(UnicodeString(static_cast<const XMLCh*>(nullptr)).empty());
  EXPECT_TRUE(UnicodeString(static_cast<const uint16*>(nullptr)).empty());
  EXPECT_EQ(*UnicodeString().wchar(), u'\0');
}

TEST(UnicodeString, CountsTheBytesOfItsTextWithoutTheTerminator) {
  const UnicodeString text(u"ab");
  EXPECT_EQ(text.utf16Size(), 4u);
  EXPECT_EQ(text.size(), 2u);
  EXPECT_EQ(std::memcmp(text.utf16(), u"ab", 6), 0);
  EXPECT_STREQ(reinterpret_cast<const char*>(UnicodeString().utf16()), "");
}

TEST(UnicodeString, CopiesAndMovesItsText) {
  UnicodeString first(u"a text too long to live inside the string object itself");
  const UnicodeString copy = first;
  const UnicodeString moved = std::move(first);
  EXPECT_EQ(copy, moved);
  first = copy;
  EXPECT_EQ(first.toWstring(), copy.toWstring());
}

TEST(UnicodeString, ComparesByCodeUnits) {
  EXPECT_LT(UnicodeString("a"), UnicodeString("b"));
  EXPECT_LT(UnicodeString(u"\U0001F600"), UnicodeString(u"\uFFFD"));
  EXPECT_NE(UnicodeString("a"), UnicodeString("A"));
}

TEST(Utf16ToWstring, GivesAnEmptyStringForNull) {
  EXPECT_EQ(utf16ToWstring(static_cast<const XMLCh*>(nullptr)), u"");
  EXPECT_EQ(utf16ToWstring(static_cast<const uint16*>(nullptr)), u"");
}

TEST(Utf16ToWstring, CopiesUpToTheFirstNul) {
  const uint16 units[] = {'a', 'b', 0, 'c'};
  EXPECT_EQ(utf16ToWstring(units), u"ab");
  EXPECT_EQ(utf16ToWstring(u"ab\0c"), u"ab");
}

}  // namespace
}  // namespace Vantor::XMLUtils
