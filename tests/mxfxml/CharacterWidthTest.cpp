#include "Terminal/CharacterWidth.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Vantor::Tool {
namespace {

using testing::ElementsAre;

TEST(CharacterWidth, CountsWideCharactersTwiceAndMarksNot) {
  EXPECT_EQ(columnsOf("Coast"), 5u);
  EXPECT_EQ(columnsOf("Grüße"), 5u);
  EXPECT_EQ(columnsOf("日本語"), 6u);
  EXPECT_EQ(columnsOf("한국"), 4u);
  EXPECT_EQ(columnsOf("ｱ"), 1u) << "halfwidth";
  EXPECT_EQ(columnsOf("e\u0301"), 1u) << "a combining acute accent";
  EXPECT_EQ(columnsOf("a\u200bb"), 2u) << "a zero width space";
  EXPECT_EQ(columnsOf("😀"), 2u);
  EXPECT_EQ(columnsOf(""), 0u);
}

TEST(CharacterWidth, CountsOctetsThatAreNoUTF8OneByOne) {
  EXPECT_EQ(columnsOf("\xff\xfe"), 2u);
  EXPECT_EQ(columnsOf("\xe6\x97"), 2u) << "cut short";
  EXPECT_EQ(columnsOf("\xc0\xaf"), 2u) << "overlong";
}

TEST(CharacterWidth, EscapesWhatATerminalWouldObey) {
  EXPECT_EQ(printable("a\x1b[31mb"), "a\\u001B[31mb");
  EXPECT_EQ(printable("line\nline\ttab\x7f"), "line\\u000Aline\\u0009tab\\u007F");
  EXPECT_EQ(printable("\u009b31m"), "\\u009B31m");
  EXPECT_EQ(printable("a\u202eb\u2069"), "a\\u202Eb\\u2069");
  EXPECT_EQ(printable("\xff"), "\ufffd");
  EXPECT_EQ(printable("日本 é"), "日本 é");
}

TEST(CharacterWidth, BreaksLinesWhereTheyReadBest) {
  EXPECT_THAT(wrapped("one two three", 8, 8), ElementsAre("one two", "three"));
  EXPECT_THAT(wrapped("06.0E.2B.34.04", 7, 7), ElementsAre("06.0E.", "2B.34.", "04"));
  EXPECT_THAT(wrapped("MXFGCFrameWrapped", 12, 12), ElementsAre("MXFGCFrame", "Wrapped"));
  EXPECT_THAT(wrapped("abcdefgh", 3, 4), ElementsAre("abc", "defg", "h"));
  EXPECT_THAT(wrapped("", 8, 8), ElementsAre(""));
}

TEST(CharacterWidth, KeepsLinesOfWideCharactersWithinTheirColumns) {
  EXPECT_THAT(wrapped("日本語放送", 5, 5), ElementsAre("日本", "語放", "送"));
  EXPECT_THAT(wrapped("日本", 1, 1), ElementsAre("日", "本")) << "wider than the line";
}

}  // namespace
}  // namespace Vantor::Tool
