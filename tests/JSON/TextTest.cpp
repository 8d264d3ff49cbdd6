#include "JSON/Text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

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
  EXPECT_THAT(refusalOf("{\n  \"a\": ]}"), testing::StartsWith("line 2, column 8: syntax error while parsing value"));
  EXPECT_THAT(refusalOf(""), testing::StartsWith("line 1, column 1: "));
  EXPECT_THAT(refusalOf("{\"a\": 1"), testing::HasSubstr("unexpected end of input"));
  EXPECT_THAT(refusalOf("{} x"), testing::StartsWith("line 1, column 4: "));
  EXPECT_THAT(refusalOf("{\"a\": \"\xFF\"}"), testing::HasSubstr("ill-formed UTF-8"));
  EXPECT_THAT(refusalOf(R"({"a": "\ud800"})"), testing::HasSubstr("surrogate"));
  EXPECT_THAT(refusalOf(R"({"a": 1e999})"), testing::HasSubstr(": number overflow parsing '1e999'"));
  EXPECT_THAT(refusalOf(R"({"a": 1e999})"), testing::StartsWith("line 1, column "));
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
}

}  // namespace
}  // namespace Vantor::JSON
