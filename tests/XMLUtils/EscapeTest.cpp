#include "XMLUtils/Escape.h"

#include <gtest/gtest.h>

#include <random>

#include "Core/Platform/Strings.h"

namespace Vantor::XMLUtils {
namespace {

TEST(Escape, NamesWhatXmlForbidsInUpperCaseHexadecimal) {
  EXPECT_EQ(escapeForbidden(u"\x01\x1F"), u"$#x1;$#x1F;");
  EXPECT_EQ(escapeForbidden(u"a\xFFFE"
                            u"b\xFFFF"),
            u"a$#xFFFE;b$#xFFFF;");
  EXPECT_EQ(escapeForbidden(wstring(1, u'\0')), u"$#x0;");
}

TEST(Escape, NamesUnpairedSurrogatesAndKeepsPairs) {
  EXPECT_EQ(escapeForbidden({0xDC00, 0xD83D, 0xDE00, 0xD800}), (u"$#xDC00;" + wstring{0xD83D, 0xDE00} + u"$#xD800;"));
}

TEST(Escape, KeepsWhatXmlAllows) {
  const wstring allowed = u"\t\n\r $# #x $x ;\x7F\x85\u2028\uD7FF\uE000\uFFFD";
  EXPECT_EQ(escapeForbidden(allowed), allowed);
  EXPECT_EQ(unescapeForbidden(allowed), allowed);
}

TEST(Escape, EscapesItsOwnStart) {
  EXPECT_EQ(escapeForbidden(u"$#x1;"), u"$#x24;#x1;");
  EXPECT_EQ(unescapeForbidden(u"$#x24;#x1;"), u"$#x1;");
  EXPECT_EQ(escapeForbidden(u"$$#x"), u"$$#x24;#x");
}

TEST(Escape, UndoesOnlyWhatItWouldHaveWritten) {
  for (const auto* text : {u"$#x", u"$#x;", u"$#x41;", u"$#x01;", u"$#xfffe;", u"$#x9;", u"$#xA;", u"$#x1", u"$#x1 ;",
                           u"$#x10000;", u"$#xFFFFE;", u"$#x-1;", u"$#x1G;", u"$#X1;"}) {
    EXPECT_EQ(unescapeForbidden(text), text) << Vantor::Utils::wstringToString(text);
  }
}

TEST(Escape, RoundTripsEverySingleCodeUnit) {
  for (char32_t unit = 0; unit <= 0xFFFF; ++unit) {
    const wstring text(1, static_cast<char16_t>(unit));
    ASSERT_EQ(unescapeForbidden(escapeForbidden(text)), text) << std::hex << static_cast<uint32>(unit);
  }
}

TEST(Escape, RoundTripsRandomTextsOfTheTroublesomeUnits) {
  constexpr char16_t kUnits[] = {u'$', u'#', u'x', u'0', u'1', u'2', u'4', u'F', u';', 0, 1, 0xD800, 0xDC00, 0xFFFF};
  std::mt19937 random(20240501);
  std::uniform_int_distribution<std::size_t> pick(0, std::size(kUnits) - 1);
  for (int i = 0; i < 20000; ++i) {
    wstring text(pick(random) * 2, u'\0');
    for (auto& unit : text) unit = kUnits[pick(random)];
    const auto escaped = escapeForbidden(text);
    ASSERT_EQ(unescapeForbidden(escaped), text);
    for (std::size_t k = 0; k < escaped.size(); ++k) {
      const bool paired = (k + 1 < escaped.size() && isSurrogatePair(escaped[k], escaped[k + 1])) ||
                          (k > 0 && isSurrogatePair(escaped[k - 1], escaped[k]));
      ASSERT_TRUE(paired || !isForbidden(escaped[k]));
    }
  }
}

}  // namespace
}  // namespace Vantor::XMLUtils
