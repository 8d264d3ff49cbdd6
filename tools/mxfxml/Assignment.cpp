#include "Assignment.h"

#include <optional>

#include "ErrorText.h"

namespace Vantor::Tool {

namespace {

std::optional<PropertyChoice> choiceFrom(const std::string& text) {
  const auto point = text.rfind('.');  // identifiers of sets have points, too
  if (point == std::string::npos || point == 0 || point + 1 == text.size()) return std::nullopt;
  return PropertyChoice{text, text.substr(0, point), text.substr(point + 1)};
}

}  // namespace

PropertyChoice PropertyChoice::parse(const std::string& text) {
  auto choice = text.find('=') == std::string::npos ? choiceFrom(text) : std::nullopt;
  if (choice) return *choice;
  throw UsageError("'" + text +
                   "' is no property; write Set.Property, or Set[2].Property for the second set of a name");
}

Assignment Assignment::parse(const std::string& text) {
  const auto equals = text.find('=');
  if (equals != std::string::npos) {
    if (auto target = choiceFrom(text.substr(0, equals))) return {*target, text.substr(equals + 1)};
  }
  throw UsageError(
      "'" + text +
      "' is no assignment; write Set.Property=VALUE, or Set[2].Property=VALUE for the second set of a name");
}

}  // namespace Vantor::Tool
