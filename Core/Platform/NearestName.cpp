#include "Core/Platform/NearestName.h"

#include <algorithm>
#include <cstddef>

namespace Vantor::Platform {

namespace {

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

/// Without case, and without what joins words.
std::string folded(std::string_view text) {
  auto result = lowered(text);
  const auto joinsWords = [](char character) {
    return std::string_view("_-. ").find(character) != std::string_view::npos;
  };
  result.erase(std::remove_if(result.begin(), result.end(), joinsWords), result.end());
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

bool isUpper(char character) { return character >= 'A' && character <= 'Z'; }
bool isLower(char character) { return character >= 'a' && character <= 'z'; }

/// "TrackID" is "Track" and "ID"; "AS_11_Shim_Name" is "AS", "11", "Shim" and "Name".
std::vector<std::string> wordsOf(std::string_view name) {
  std::vector<std::string> words(1);
  for (std::size_t i = 0; i < name.size(); ++i) {
    const bool endsAcronym = i != 0 && isUpper(name[i - 1]) && i + 1 < name.size() && isLower(name[i + 1]);
    const bool begins = isUpper(name[i]) && i != 0 && (!isUpper(name[i - 1]) || endsAcronym);
    if ((begins || name[i] == '_') && !words.back().empty()) words.emplace_back();
    if (name[i] != '_') words.back() += lowered(name[i]);
  }
  return words;
}

bool isWordIn(const std::string& name, const std::vector<std::string>& words) {
  return std::any_of(words.begin(), words.end(), [&](const std::string& word) {
    return name.size() <= kShortestPart ? word == name : word.size() >= kShortestPart && distance(name, word) <= 1;
  });
}

bool isAcronymOf(const std::string& name, const std::vector<std::string>& words) {
  if (name.size() < 2 || name.size() > words.size()) return false;
  return std::equal(name.begin(), name.end(), words.begin(),
                    [](char letter, const std::string& word) { return !word.empty() && word.front() == letter; });
}

void addOnce(const std::string& name, std::size_t most, std::vector<std::string>& names) {
  if (names.size() < most && std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
}

/// @param edits  at most.
std::vector<std::string> withFewestEdits(std::string_view name, const std::vector<std::string>& names,
                                         std::size_t edits, std::size_t most) {
  std::vector<std::string> nearest;
  const auto wanted = lowered(name);
  for (const auto& candidate : names) {
    const auto gap = std::max(name.size(), candidate.size()) - std::min(name.size(), candidate.size());
    if (candidate.empty() || gap > edits) continue;
    const auto needed = distance(wanted, lowered(candidate));
    if (needed > edits) continue;
    if (needed < edits) nearest.clear();
    edits = needed;
    addOnce(candidate, most, nearest);
  }
  return nearest;
}

template <class Predicate>
std::vector<std::string> namesThat(Predicate predicate, const std::vector<std::string>& names, std::size_t most) {
  std::vector<std::string> found;
  for (const auto& candidate : names) {
    if (found.size() < most && predicate(candidate)) addOnce(candidate, most, found);
  }
  return found;
}

}  // namespace

std::vector<std::string> nearestNames(std::string_view name, const std::vector<std::string>& names, std::size_t most) {
  if (name.empty() || name.size() > kLongestName) return {};
  auto nearest = withFewestEdits(name, names, name.size() < 2 ? 0 : 1, most);
  if (const auto part = folded(name); nearest.empty() && part.size() >= kShortestPart) {
    nearest = namesThat([&](const auto& candidate) { return containsName(folded(candidate), part); }, names, most);
  }
  const auto wanted = lowered(name);
  const auto isPart = [&](const std::string& candidate) {
    const auto words = wordsOf(candidate);
    return words.size() > 1 && (isWordIn(wanted, words) || isAcronymOf(wanted, words));
  };
  if (nearest.empty() && name.size() > 1) nearest = namesThat(isPart, names, most);
  return nearest.empty() ? withFewestEdits(name, names, name.size() / 3, most) : nearest;
}

std::string suggestion(std::string_view name, const std::vector<std::string>& names) {
  return suggestionOf(nearestNames(name, names));
}

std::string suggestionOf(const std::vector<std::string>& nearest) {
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
