#include "JSON/Refusal.h"

#include <algorithm>
#include <limits>

namespace Vantor::JSON {

void requireMembers(const Value& object, std::initializer_list<std::string_view> names) {
  if (object.members() == nullptr) throw Refusal(std::string("it is ") + object.kindName() + ", not an object");
  for (const auto& [name, value] : *object.members()) {
    if (std::find(names.begin(), names.end(), name) != names.end()) continue;
    throw Refusal("there is no member \"" + name + "\" here", value.line());
  }
}

const Value& requiredMember(const Value& object, std::string_view name) {
  const auto* value = object.find(name);
  if (value == nullptr) throw Refusal("the member \"" + std::string(name) + "\" is missing");
  return *value;
}

const std::string& requiredText(const Value& object, std::string_view name) {
  const auto& value = requiredMember(object, name);
  return readingAt(name, value, [&]() -> const std::string* { return &textOf(value); })[0];
}

const std::string& textOf(const Value& value) {
  if (value.text() == nullptr) throw Refusal(std::string("it is ") + value.kindName() + ", not a text");
  return *value.text();
}

void requireVersion(const Value& version, int64 known) {
  const auto number = numberOf(version, 0, std::numeric_limits<int64>::max());
  if (number == known) return;
  throw Refusal("version " + std::to_string(number) + " is not known; this program reads version " +
                std::to_string(known));
}

int64 numberOf(const Value& value, int64 least, int64 most) {
  const auto* number = value.integer();
  if (number != nullptr && *number >= least && *number <= most) return *number;
  throw Refusal("it is no whole number from " + std::to_string(least) + " to " + std::to_string(most));
}

}  // namespace Vantor::JSON
