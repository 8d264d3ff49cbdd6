#include "JSON/Text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "Core/Platform/DocumentLine.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor::JSON {
namespace {

std::string refusalOf(const std::string& text) {
  try {
    readParts(text, [](const Part&) {});
  } catch (const Exceptions::ParseError& error) {
    return error.message();
  }
  return "no refusal";
}

std::string nested(std::size_t levels) { return std::string(levels, '[') + std::string(levels, ']'); }

TEST(JSONText, KeepsTheOrderOfMembers) {
  const auto value = Value::object().add("b", 1).add("a", Value::array().append(true).append(Value())).add("c", "ü");
  EXPECT_EQ(toLine(value), R"({"b":1,"a":[true,null],"c":"ü"})");
  EXPECT_EQ(toLine(fromText(toLine(value))), toLine(value));
}

TEST(JSONText, IndentsAllLinesButTheFirstByTheLevel) {
  EXPECT_EQ(toText(Value::object().add("a", Value::array().append("x\n")), 1),
            "{\n    \"a\": [\n      \"x\\n\"\n    ]\n  }");
}

TEST(JSONText, HasNoOctetsOfOtherEncodings) {
  EXPECT_EQ(toLine(Value::object().add("file", "bad\xff.mxf")), "{\"file\":\"bad\xEF\xBF\xBD.mxf\"}");
}

TEST(JSONText, HoldsEveryWholeNumberOfSixtyFourBits) {
  const auto value =
      Value::array().append(std::numeric_limits<int64>::min()).append(std::numeric_limits<uint64>::max());
  const auto read = fromText(R"({"n": )" + toLine(value) + "}");
  const auto& numbers = *read.find("n")->items();
  EXPECT_EQ(*numbers[0].integer(), std::numeric_limits<int64>::min());
  EXPECT_EQ(numbers[1].integer(), nullptr);
  EXPECT_EQ(*numbers[1].largeInteger(), std::numeric_limits<uint64>::max());
}

TEST(JSONText, HandsOverArraysOfTheOutermostObjectItemByItem) {
  std::vector<std::string> parts;
  readParts(R"({"a": 1, "list": [{"x": [2]}, 3], "none": [], "b": {"list": [4]}})", [&parts](const Part& part) {
    parts.push_back(part.name + (part.index ? std::to_string(*part.index) : "") + toLine(part.value));
  });
  EXPECT_THAT(parts, testing::ElementsAre("a1", R"(list0{"x":[2]})", "list13", "none[]", R"(b{"list":[4]})"));
}

TEST(JSONText, KnowsTheLinesOfMembers) {
  const auto value = fromText("{\n  \"a\":\n  1,\n  \"b\": {\n\"c\": 2}}");
  EXPECT_EQ(value.find("a")->line(), 2u);
  EXPECT_EQ(value.find("b")->line(), 4u);
  EXPECT_EQ(value.find("b")->find("c")->line(), 5u);
}

TEST(JSONText, IsRefusedWithLineAndColumn) {
  EXPECT_EQ(refusalOf("{\n  \"a\": ]}"), "line 2, column 8: ']' cannot stand here");
  EXPECT_EQ(refusalOf(""), "line 1, column 1: the document ends too early");
  EXPECT_EQ(refusalOf("{\"a\": 1"), "line 1, column 8: the document ends too early");
  EXPECT_EQ(refusalOf("{\"a\": \"x"), "line 1, column 9: a text has no end");
  EXPECT_EQ(refusalOf(std::string("{\0", 2)), "line 1, column 2: a control character cannot stand here");
  EXPECT_EQ(refusalOf("{} x"), "line 1, column 4: 'x' cannot stand here");
  EXPECT_EQ(refusalOf("{\"a\" \"b\"}"), "line 1, column 8: '\"b\"' cannot stand here");
  EXPECT_THAT(refusalOf("{\"a\": \"\xC3\"}"), testing::HasSubstr(": it is not UTF-8"));
  EXPECT_THAT(refusalOf("{\"a\" \"\xC3\xA4\"}"), testing::HasSubstr(": '\"\xC3\xA4\"' cannot stand here"));
  EXPECT_THAT(refusalOf("{\"a\" \"" + std::string(100, 'x') + "\"}"), testing::HasSubstr("xxx...' cannot stand here"));
  EXPECT_EQ(refusalOf("{\"a\": nulx}"), "line 1, column 10: 'nulx' cannot stand here");
  EXPECT_THAT(refusalOf("{\"a\": \"\xFF\"}"), testing::HasSubstr(": it is not UTF-8"));
  EXPECT_THAT(refusalOf("{\"a\": \"\xC3 \"}"), testing::HasSubstr(": it is not UTF-8"));
  EXPECT_THAT(refusalOf("{\"a\": \"x\n\"}"),
              testing::HasSubstr(": a text has a control character; a line feed is \\n"));
  EXPECT_THAT(refusalOf("{\"a\": \"\xC3\xA4\n\"}"), testing::HasSubstr(": a text has a control character"));
  for (const char* text : {R"({"a": "\ud800"})", R"({"a": "\q"})", R"({"a": "\u12"})"}) {
    EXPECT_THAT(refusalOf(text), testing::HasSubstr(": a text has an escape that stands for no character")) << text;
  }
  EXPECT_EQ(refusalOf(R"({"a": 1e999})"), "line 1, column 11: the number 1e999 is too large");
}

TEST(JSONText, IsRefusedWithTheCharacterThatStandsOutsideQuotes) {
  EXPECT_EQ(refusalOf("{\u201Ca\u201D: 1}"), "line 1, column 2: '\u201C' cannot stand here");
  EXPECT_EQ(refusalOf("{\"a\": nul\u00E4}"), "line 1, column 10: '\u00E4' cannot stand here");
  EXPECT_THAT(refusalOf("\uFF02a"), testing::HasSubstr(": '\uFF02' cannot stand here"));
  EXPECT_THAT(refusalOf("\xEF\xBB\xBFx"), testing::HasSubstr(": 'x' cannot stand here"));
  for (const char* text : {"{\xFF", "{\xE2\x80: 1}", "{\xED\xA0\x80}", "\xEF\xBBx"}) {
    EXPECT_THAT(refusalOf(text), testing::HasSubstr(": it is not UTF-8")) << text;
  }
}

TEST(JSONText, TakesNoBackslashBehindABackslashForAnEscape) {
  EXPECT_THAT(refusalOf(R"({"a" "\\u12"})"), testing::HasSubstr(R"(: '"\\u12"' cannot stand here)"));
  EXPECT_THAT(refusalOf(R"({"a" "\\ud800"})"), testing::HasSubstr(R"(: '"\\ud800"' cannot stand here)"));
  EXPECT_THAT(refusalOf(R"({"a": "\\\u12"})"), testing::HasSubstr(": a text has an escape"));
}

TEST(JSONText, IsRefusedWithTheLineForPrograms) {
  for (const auto& [text, line] : {std::pair("{\n  \"a\": ]}", 2u), std::pair("{\"a\": 1,\n\n\"a\": 2}", 3u)}) {
    try {
      fromText(text);
      ADD_FAILURE() << text;
    } catch (const Exceptions::DocumentLine& place) {
      EXPECT_EQ(place.documentLine(), line) << text;
    }
  }
}

TEST(JSONText, IsRefusedWithTheSetThatItIsIn) {
  EXPECT_THAT(
      refusalOf("{\"sets\": [{}, {\"set\": \"Track\", \"instanceUID\": \"AD.AB\",\n\"properties\": {\"X\" 1}}]}"),
      testing::HasSubstr("(in /sets/1, Track AD.AB)"));
}

TEST(JSONText, HasNoMemberTwice) {
  EXPECT_EQ(refusalOf("{\"a\": 1,\n\"a\": 2}"), R"(line 2, column 4: the member "a" is there twice)");
  EXPECT_THAT(refusalOf(R"({"sets": [{"x": {"b": 1, "b": 2}}]})"),
              testing::HasSubstr(R"("b" is there twice (in /sets/0)"));
  EXPECT_EQ(refusalOf(R"({"a": {"c": 1}, "b": {"c": 1}})"), "no refusal");
}

TEST(JSONText, IsAnObject) {
  for (const char* text : {"[]", "1", "\"a\"", "null"}) {
    EXPECT_THAT(refusalOf(text), testing::HasSubstr("the document is no object")) << text;
  }
}

TEST(JSONText, NestsNoDeeperThanTheLimit) {
  EXPECT_EQ(refusalOf("{\"a\": " + nested(kMaximumDepth - 1) + "}"), "no refusal");
  EXPECT_THAT(refusalOf("{\"a\": " + nested(kMaximumDepth) + "}"), testing::HasSubstr("nests deeper than 32 levels"));
  EXPECT_THAT(refusalOf("{\"a\": " + std::string(1000000, '[')), testing::HasSubstr("nests deeper than 32 levels"));
}

TEST(JSONText, MayBeginWithAByteOrderMark) {
  EXPECT_EQ(toLine(fromText("\xEF\xBB\xBF {\"a\": 1}")), R"({"a":1})");
  EXPECT_TRUE(looksLikeJSON("\xEF\xBB\xBF\r\n{"));
  EXPECT_FALSE(looksLikeJSON(" <x/>"));
  EXPECT_FALSE(looksLikeJSON(""));
  EXPECT_FALSE(looksLikeJSON(std::string_view("{\0\n\0", 4)));
}

}  // namespace
}  // namespace Vantor::JSON
