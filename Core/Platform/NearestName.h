#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Vantor::Platform {

/// The names that most likely were meant by another one, at most three, in their order: those with one letter added,
/// left out, changed or swapped with its neighbour, whatever the case; or else those that contain the name, if it has
/// three letters or more; or else those with the fewest such changes, up to a third of its letters.
std::vector<std::string> nearestNames(std::string_view name, const std::vector<std::string>& names);

/// " (did you mean 'export'?)", or with two or three names " (did you mean 'export' or 'import'?)"; empty without any.
std::string suggestion(std::string_view name, const std::vector<std::string>& names);

/// Whether a text contains another, whatever the case of ASCII letters.
bool containsName(std::string_view text, std::string_view part);

}  // namespace Vantor::Platform
