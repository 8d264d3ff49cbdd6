#include "Terminal/TreeText.h"

#include <gtest/gtest.h>

namespace Vantor::Tool {
namespace {

using Kind = TreeLine::Kind;

std::vector<TreeLine> someLines() {
  return {{Kind::kSet, 0, false, true, {{"Preface", Style::kName}}},
          {Kind::kValue, 0, false, true, {{"Version"}, {": "}, {"1.3"}}},
          {Kind::kSet, 1, false, true, {{"Storage", Style::kName}}},
          {Kind::kSet, 2, true, false, {{"Package", Style::kName}}, '+'},
          {Kind::kValue, 2, false, false, {{"Name: \"日本\""}}, '~'},
          {Kind::kSet, 1, true, false, {{"Identification", Style::kName}}, '-'}};
}

TEST(TreeText, DrawsBranches) {
  EXPECT_EQ(treeText(someLines(), {}), R"(Preface
│ Version: 1.3
├─ Storage
│  └─ Package
│       Name: "日本"
└─ Identification
)");
}

TEST(TreeText, DrawsInASCIIWhereTheLocaleHasNoMore) {
  EXPECT_EQ(treeText(someLines(), {80, false}), R"(Preface
| Version: 1.3
|- Storage
|  `- Package
|       Name: "日本"
`- Identification
)");
}

TEST(TreeText, PutsSignsInFront) {
  EXPECT_EQ(treeText(someLines(), {80, true, false, true}), R"(  Preface
  │ Version: 1.3
  ├─ Storage
+ │  └─ Package
~ │       Name: "日本"
- └─ Identification
)");
}

TEST(TreeText, BreaksLinesUnderTheirText) {
  const std::vector<TreeLine> lines = {{Kind::kSet, 0, false, true, {{"Preface"}}},
                                       {Kind::kValue, 0, false, true, {{"Name: one two three four five six seven"}}},
                                       {Kind::kSet, 1, true, false, {{"Storage"}}}};
  EXPECT_EQ(treeText(lines, {20}), R"(Preface
│ Name: one two
│   three four five
│   six seven
└─ Storage
)");
}

TEST(TreeText, ColoursPiecesAcrossLinesAndNothingElse) {
  const std::vector<TreeLine> lines = {{Kind::kSet, 0, false, false, {{"a b", Style::kName}, {" plain"}}}};
  EXPECT_EQ(treeText(lines, {80, true, true}), "\x1b[1ma b\x1b[0m plain\n");
  EXPECT_EQ(treeText(lines, {80, true, false}), "a b plain\n");
}

TEST(TreeText, EscapesControlCharacters) {
  EXPECT_EQ(treeText({{Kind::kSet, 0, false, false, {{"\x1b[2J"}}}}, {}), "\\u001B[2J\n");
}

}  // namespace
}  // namespace Vantor::Tool
