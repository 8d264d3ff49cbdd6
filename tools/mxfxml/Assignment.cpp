#include "Assignment.h"

#include <charconv>

#include "ErrorText.h"

namespace Vantor::Tool {

namespace {

[[noreturn]] void refuse(const std::string& text) {
  throw CommandError("'" + text +
                     "' sets nothing; write Set.Property=VALUE, or Set[2].Property=VALUE for the second set "
                     "of that name");
}

/// Takes "[2]" from the end of a set's name.
std::optional<std::size_t> takeNumber(std::string& set, const std::string& text) {
  const auto bracket = set.find('[');
  if (bracket == std::string::npos) return std::nullopt;
  if (set.back() != ']') refuse(text);
  std::size_t number = 0;
  const char* const end = set.data() + set.size() - 1;
  const auto [stop, error] = std::from_chars(set.data() + bracket + 1, end, number);
  if (error != std::errc() || stop != end || number == 0) refuse(text);
  set.resize(bracket);
  return number;
}

}  // namespace

Assignment Assignment::parse(const std::string& text) {
  const auto equals = text.find('=');
  const auto point = text.find('.');
  if (equals == std::string::npos || point == std::string::npos || point > equals) refuse(text);
  Assignment assignment;
  assignment.set = text.substr(0, point);
  assignment.property = text.substr(point + 1, equals - point - 1);
  assignment.value = text.substr(equals + 1);
  if (assignment.set.empty() || assignment.property.empty()) refuse(text);
  assignment.number = takeNumber(assignment.set, text);
  if (assignment.set.empty()) refuse(text);
  return assignment;
}

}  // namespace Vantor::Tool
