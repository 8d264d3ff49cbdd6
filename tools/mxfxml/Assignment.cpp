#include "Assignment.h"

#include <charconv>

#include "ErrorText.h"

namespace Vantor::Tool {

namespace {

/// Takes "[2]" from the end of a set's name. Returns false when there is a bracket, but no such end.
bool takeNumber(PropertyChoice& choice) {
  const auto bracket = choice.set.find('[');
  if (bracket == std::string::npos) return true;
  if (choice.set.back() != ']') return false;
  std::size_t number = 0;
  const char* const end = choice.set.data() + choice.set.size() - 1;
  const auto [stop, error] = std::from_chars(choice.set.data() + bracket + 1, end, number);
  if (error != std::errc() || stop != end || number == 0) return false;
  choice.number = number;
  choice.set.resize(bracket);
  return true;
}

std::optional<PropertyChoice> choiceFrom(const std::string& text) {
  const auto point = text.find('.');
  if (point == std::string::npos || text.find('=') != std::string::npos) return std::nullopt;
  PropertyChoice choice;
  choice.text = text;
  choice.set = text.substr(0, point);
  choice.property = text.substr(point + 1);
  if (choice.set.empty() || choice.property.empty() || !takeNumber(choice) || choice.set.empty()) return std::nullopt;
  return choice;
}

}  // namespace

PropertyChoice PropertyChoice::parse(const std::string& text) {
  if (auto choice = choiceFrom(text)) return *choice;
  throw UsageError("'" + text +
                   "' names no property; write Set.Property, or Set[2].Property for the second set of that name");
}

Assignment Assignment::parse(const std::string& text) {
  const auto equals = text.find('=');
  if (equals != std::string::npos) {
    if (auto target = choiceFrom(text.substr(0, equals))) return {*target, text.substr(equals + 1)};
  }
  throw UsageError("'" + text +
                   "' sets nothing; write Set.Property=VALUE, or Set[2].Property=VALUE for the second set "
                   "of that name");
}

}  // namespace Vantor::Tool
