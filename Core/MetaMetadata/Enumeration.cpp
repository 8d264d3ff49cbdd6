#include "Core/MetaMetadata/Enumeration.h"

#include <algorithm>

#include "Core/MetaMetadata/NameFolding.h"

namespace Vantor::MetaMetadata {

namespace {

/// Fewer at the end of a name are more likely a mistake.
constexpr std::size_t kFewestOfAnEnding = 3;

}  // namespace

Enumeration::Enumeration(std::string_view name, const NamedNumbers& numbers) : name_(name) {
  values_.reserve(numbers.size());
  for (const auto& [number, text] : numbers) {
    values_.push_back({number, static_cast<uint32>(names_.size()), static_cast<uint32>(text.size())});
    names_ += text;
  }
  std::stable_sort(values_.begin(), values_.end(),
                   [](const Value& left, const Value& right) { return left.number < right.number; });
}

const Enumeration::Value* Enumeration::find(int64 number) const {
  const auto at = std::lower_bound(values_.begin(), values_.end(), number,
                                   [](const Value& value, int64 wanted) { return value.number < wanted; });
  return at == values_.end() || at->number != number ? nullptr : &*at;
}

std::string_view Enumeration::nameOf(int64 number) const {
  const auto* value = find(number);
  return value == nullptr ? std::string_view() : nameOf(*value);
}

Templates::vector<int64> Enumeration::numbersNamed(std::string_view name) const {
  const auto folded = foldedName(name);
  Templates::vector<int64> numbers;
  for (const auto& value : values_) {
    if (nameOf(value) == name) return {value.number};
    if (foldedName(nameOf(value)) == folded) numbers.push_back(value.number);
  }
  if (numbers.empty() && folded.size() >= kFewestOfAnEnding) {
    for (const auto& value : values_) {
      if (endsWithWords(nameOf(value), folded)) numbers.push_back(value.number);
    }
  }
  return numbers;
}

Templates::vector<std::string_view> Enumeration::firstNames(std::size_t most) const {
  Templates::vector<std::string_view> names;
  for (std::size_t i = 0; i < std::min(most, values_.size()); ++i) names.push_back(nameOf(values_[i]));
  return names;
}

}  // namespace Vantor::MetaMetadata
