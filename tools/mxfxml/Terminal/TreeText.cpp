#include "Terminal/TreeText.h"

#include <algorithm>

#include "Terminal/CharacterWidth.h"

namespace Vantor::Tool {

namespace {

using LineKind = TreeLine::Kind;

constexpr std::size_t kIndent = 3;  // columns of a branch

/// The pieces of branches, each `kIndent` columns wide but for the mark of values.
struct Boxes {
  const char* on;     // a branch that goes on
  const char* fork;   // a set that others follow
  const char* end;    // the last set
  const char* value;  // beside values, above the sets that follow
};
constexpr Boxes kBoxes = {"│  ", "├─ ", "└─ ", "│ "};
constexpr Boxes kPlainBoxes = {"|  ", "|- ", "`- ", "| "};

bool isBlank(const std::string& text) { return text.find_first_not_of(' ') == std::string::npos; }

class TreeWriter {
 public:
  explicit TreeWriter(const TreeStyle& style) : style_(style), boxes_(style.hasBoxes ? kBoxes : kPlainBoxes) {}

  void add(const TreeLine& line) {
    if (line.kind == LineKind::kHeading && !text_.empty()) text_ += "\n";
    const auto start = line.kind == LineKind::kHeading ? std::string() : startOf(line);
    const auto rest = line.kind == LineKind::kHeading ? std::string() : restOf(line);
    addWrapped(line, start, rest);
  }
  std::string take() { return std::move(text_); }

 private:
  /// What stands before the first line of a set or a value.
  std::string startOf(const TreeLine& line) {
    if (line.kind == LineKind::kValue) return restOf(line);
    goesOn_.resize(std::max(goesOn_.size(), line.depth + 1));
    goesOn_[line.depth] = line.depth != 0 && !line.isLast;
    if (line.depth == 0) return {};
    return barsUpTo(line.depth - 1) + (line.isLast ? boxes_.end : boxes_.fork);
  }

  /// What stands before the other lines.
  std::string restOf(const TreeLine& line) const {
    const auto bars = barsUpTo(line.depth) + (line.hasBranches ? boxes_.value : "  ");
    return line.kind == LineKind::kSet ? bars + "  " : bars;
  }

  std::string barsUpTo(std::size_t depth) const {
    std::string bars;
    for (std::size_t i = 1; i <= depth; ++i) bars += goesOn_[i] ? boxes_.on : "   ";
    return bars;
  }

  void addWrapped(const TreeLine& line, const std::string& start, const std::string& rest) {
    std::vector<TreeLine::Piece> pieces;
    std::string all;
    for (const auto& piece : line.pieces) {
      pieces.push_back({printable(piece.text), piece.style});
      all += pieces.back().text;
    }
    const std::string hanging = line.kind == LineKind::kValue ? rest + "  " : rest;
    std::size_t at = 0;
    std::string before = start;
    for (const auto& part : wrapped(all, roomBehind(start), roomBehind(hanging))) {
      at = all.find(part, at);
      text_ += sign(line) + styled(before, isBlank(before) ? Style::kPlain : Style::kDim, style_.hasColor) +
               colored(pieces, at, part.size()) + "\n";
      at += part.size();
      before = hanging;
    }
  }

  std::string sign(const TreeLine& line) const {
    if (!style_.hasSigns) return {};
    const auto style = line.sign == '+' ? Style::kAdded : line.sign == '-' ? Style::kRemoved : Style::kChanged;
    return line.sign == ' ' ? "  " : styled(std::string(1, line.sign), style, style_.hasColor) + " ";
  }

  std::size_t roomBehind(const std::string& start) const {
    const std::size_t used = columnsOf(start) + (style_.hasSigns ? 2 : 0);
    return style_.columns > used + kLeastRoom ? style_.columns - used : kLeastRoom;
  }

  /// A part of the pieces, put together, with their colours.
  std::string colored(const std::vector<TreeLine::Piece>& pieces, std::size_t begin, std::size_t size) const {
    std::string text;
    std::size_t at = 0;
    for (const auto& piece : pieces) {
      const std::size_t from = std::max(begin, at), to = std::min(begin + size, at + piece.text.size());
      if (from < to) text += styled(piece.text.substr(from - at, to - from), piece.style, style_.hasColor);
      at += piece.text.size();
    }
    return text;
  }

  static constexpr std::size_t kLeastRoom = 16;

  TreeStyle style_;
  Boxes boxes_;
  std::vector<bool> goesOn_;  // by depth: whether sets follow on that level
  std::string text_;
};

}  // namespace

std::size_t deepestBranch(const TreeStyle& style) { return std::max<std::size_t>(style.columns / 2 / kIndent, 8); }

std::string treeText(const std::vector<TreeLine>& lines, const TreeStyle& style) {
  TreeWriter writer(style);
  for (const auto& line : lines) writer.add(line);
  return writer.take();
}

}  // namespace Vantor::Tool
