#pragma once

#include <string>
#include <vector>

namespace Vantor::Tool {

/// The word that takes the fewest insertions, deletions and changes of a character to become another; the first of
/// several.
/// @param words  at least one.
std::string nearestWord(const std::string& word, const std::vector<std::string>& words);

}  // namespace Vantor::Tool
