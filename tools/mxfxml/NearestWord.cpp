#include "NearestWord.h"

#include <algorithm>
#include <numeric>

namespace Vantor::Tool {

namespace {

/// Levenshtein's distance, row by row.
std::size_t distance(const std::string& left, const std::string& right) {
  std::vector<std::size_t> row(right.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < left.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < right.size(); ++j) {
      const std::size_t changed = diagonal + (left[i] == right[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({changed, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string nearestWord(const std::string& word, const std::vector<std::string>& words) {
  return *std::min_element(words.begin(), words.end(), [&word](const std::string& left, const std::string& right) {
    return distance(word, left) < distance(word, right);
  });
}

}  // namespace Vantor::Tool
