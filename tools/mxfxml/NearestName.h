#pragma once

#include <string>
#include <vector>

namespace Vantor::Tool {

/// The name that most likely was meant by another one: the fewest letters added, left out, changed or swapped with
/// their neighbour, whatever their case. Empty when a third of its letters or more would have to change.
std::string nearestName(const std::string& name, const std::vector<std::string>& names);

/// " (did you mean 'export'?)", or nothing.
std::string suggestion(const std::string& name, const std::vector<std::string>& names);

}  // namespace Vantor::Tool
