#include "NearestName.h"

#include <algorithm>
#include <cctype>
#include <cstddef>

namespace Vantor::Tool {

namespace {

std::string lowered(std::string text) {
  for (char& character : text) character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
  return text;
}

/// The edits that make one text of another, each of one letter or of two neighbours that change places.
std::size_t distance(const std::string& from, const std::string& to) {
  std::vector<std::size_t> beforeLast, last, row(to.size() + 1);
  for (std::size_t j = 0; j <= to.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= from.size(); ++i) {
    beforeLast = last;
    last = row;
    row[0] = i;
    for (std::size_t j = 1; j <= to.size(); ++j) {
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (from[i - 1] == to[j - 1] ? 0 : 1)});
      const bool isSwap = i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1];
      if (isSwap) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
    }
  }
  return row[to.size()];
}

}  // namespace

std::string nearestName(const std::string& name, const std::vector<std::string>& names) {
  std::string nearest;
  std::size_t fewest = (name.size() + 2) / 3;
  for (const auto& candidate : names) {
    const auto edits = distance(lowered(name), lowered(candidate));
    if (edits > fewest || (edits == fewest && !nearest.empty())) continue;
    nearest = candidate;
    fewest = edits;
  }
  return nearest;
}

std::string suggestion(const std::string& name, const std::vector<std::string>& names) {
  const auto nearest = nearestName(name, names);
  return nearest.empty() ? "" : " (did you mean '" + nearest + "'?)";
}

}  // namespace Vantor::Tool
