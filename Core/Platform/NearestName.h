#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Vantor::Platform {

constexpr std::size_t kMostNearNames = 3;

/// The names that most likely were meant by another one, in their order: those with one letter added, left out, changed
/// or swapped with its neighbour, whatever the case; or else those that contain the name, if it has three letters or
/// more, whatever joins the words ("AS11Core" is in "DM_AS_11_Core"); or else those with a word that is the name but
/// for one such change, or whose first letters of words begin with it; or else those with the fewest such changes, up
/// to a third of its letters.
/// @param most  of names.
std::vector<std::string> nearestNames(std::string_view name, const std::vector<std::string>& names,
                                      std::size_t most = kMostNearNames);

/// " (did you mean 'export'?)", or with two or three names " (did you mean 'export' or 'import'?)"; empty without any.
std::string suggestion(std::string_view name, const std::vector<std::string>& names);
/// The same for names that are found already.
std::string suggestionOf(const std::vector<std::string>& nearest);

/// Whether a text contains another, whatever the case of ASCII letters.
bool containsName(std::string_view text, std::string_view part);

}  // namespace Vantor::Platform
