#include "Core/Platform/NearestName.h"

#include <algorithm>
#include <cstddef>

namespace Vantor::Platform {

namespace {

constexpr std::size_t kMostNames = 3;
constexpr std::size_t kShortestPart = 3;
constexpr std::size_t kLongestName = 200;  // the cost grows with the square

char lowered(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

std::string lowered(std::string_view text) {
  std::string result(text);
  for (char& character : result) character = lowered(character);
  return result;
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

void addOnce(const std::string& name, std::vector<std::string>& names) {
  if (names.size() < kMostNames && std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
}

/// @param most  of edits.
std::vector<std::string> withFewestEdits(std::string_view name, const std::vector<std::string>& names,
                                         std::size_t most) {
  std::vector<std::string> nearest;
  std::size_t fewest = most;
  for (const auto& candidate : names) {
    const auto edits = distance(lowered(name), lowered(candidate));
    if (edits > fewest || candidate.empty()) continue;
    if (edits < fewest) nearest.clear();
    fewest = edits;
    addOnce(candidate, nearest);
  }
  return nearest;
}

std::vector<std::string> namesWith(std::string_view part, const std::vector<std::string>& names) {
  std::vector<std::string> found;
  for (const auto& candidate : names) {
    if (containsName(candidate, part)) addOnce(candidate, found);
  }
  return found;
}

}  // namespace

std::vector<std::string> nearestNames(std::string_view name, const std::vector<std::string>& names) {
  if (name.empty() || name.size() > kLongestName) return {};
  auto nearest = withFewestEdits(name, names, name.size() < 2 ? 0 : 1);
  if (nearest.empty() && name.size() >= kShortestPart) nearest = namesWith(name, names);
  return nearest.empty() ? withFewestEdits(name, names, name.size() / 3) : nearest;
}

std::string suggestion(std::string_view name, const std::vector<std::string>& names) {
  const auto nearest = nearestNames(name, names);
  std::string text;
  for (std::size_t i = 0; i < nearest.size(); ++i) {
    const char* const joint = i == 0 ? "" : i + 1 == nearest.size() ? " or " : ", ";
    text += joint + ("'" + nearest[i] + "'");
  }
  return text.empty() ? "" : " (did you mean " + text + "?)";
}

bool containsName(std::string_view text, std::string_view part) {
  return std::search(text.begin(), text.end(), part.begin(), part.end(),
                     [](char a, char b) { return lowered(a) == lowered(b); }) != text.end();
}

}  // namespace Vantor::Platform
