#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Terminal/TextStyle.h"

/// Trees of sets on a terminal.
namespace Vantor::Tool {

/// One line of a tree, before it is broken to the width of the terminal.
struct TreeLine {
  enum class Kind {
    kHeading,  ///< apart from the tree, with a blank line before it
    kSet,      ///< a branch
    kValue     ///< of the set before it
  };
  struct Piece {
    std::string text;  ///< any; what a terminal would obey is escaped
    Style style = Style::kPlain;
  };

  Kind kind = Kind::kSet;
  std::size_t depth = 0;      ///< of the set, 0 for a root
  bool isLast = false;        ///< of the sets of its owner; for kSet
  bool hasBranches = false;   ///< whether sets follow below this one, or below the set of this value
  std::vector<Piece> pieces;  ///< side by side
  char sign = ' ';            ///< in trees with signs: '+', '-', '~' or ' '
};

/// How to show trees.
struct TreeStyle {
  std::size_t columns = 80;
  bool hasBoxes = true;   ///< box-drawing characters, else ASCII
  bool hasColor = false;  ///< the codes of ECMA-48
  bool hasSigns = false;  ///< a column for the signs in front
};

/// How deep branches may be, so that half of the columns are left for texts.
std::size_t deepestBranch(const TreeStyle& style);

/// Takes time in proportion to the text.
std::string treeText(const std::vector<TreeLine>& lines, const TreeStyle& style);

}  // namespace Vantor::Tool
