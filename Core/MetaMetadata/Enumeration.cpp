#include "Core/MetaMetadata/Enumeration.h"

#include <algorithm>

namespace Vantor::MetaMetadata {

void Enumeration::add(int64 number, std::string_view name) {
  const Value value{number, static_cast<uint32>(names_.size()), static_cast<uint32>(name.size())};
  const auto at = std::upper_bound(values_.begin(), values_.end(), number,
                                   [](int64 wanted, const Value& other) { return wanted < other.number; });
  values_.insert(at, value);
  names_ += name;
}

const Enumeration::Value* Enumeration::find(int64 number) const {
  const auto at = std::lower_bound(values_.begin(), values_.end(), number,
                                   [](const Value& value, int64 wanted) { return value.number < wanted; });
  return at == values_.end() || at->number != number ? nullptr : &*at;
}

std::string_view Enumeration::nameOf(int64 number) const {
  const auto* value = find(number);
  return value == nullptr ? std::string_view() : std::string_view(names_).substr(value->nameStart, value->nameSize);
}

}  // namespace Vantor::MetaMetadata
