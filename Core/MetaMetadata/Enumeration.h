#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "Core/Platform/Containers.h"
#include "Core/Platform/Types.h"

namespace Vantor::MetaMetadata {

/// Numbers with their names, in any order; the first of several names of a number counts.
using NamedNumbers = Templates::vector<std::pair<int64, std::string_view>>;

/// An integer type whose numbers have names (SMPTE ST 2003). Belongs to its `Dictionary` and lives as long; never
/// changes, so any thread may read it.
class Enumeration {
 public:
  /// Copies the names.
  Enumeration(std::string_view name, const NamedNumbers& numbers);

  const std::string& name() const { return name_; }
  /// Count of numbers.
  std::size_t size() const { return values_.size(); }
  bool has(int64 number) const { return find(number) != nullptr; }
  /// The name of a number, the first of several; empty when it has none.
  std::string_view nameOf(int64 number) const;
  /// The numbers that go by a name: the one that has it letter by letter, or else all that have it with other case
  /// and punctuation, or else all that end with it as whole words: "EBU R48 2a" of "AudioLayout_EBU_R_48_2a".
  Templates::vector<int64> numbersNamed(std::string_view name) const;
  /// The names of the lowest numbers, at most so many.
  Templates::vector<std::string_view> firstNames(std::size_t most) const;

 private:
  struct Value {
    int64 number;
    uint32 nameStart;  // in `names_`
    uint32 nameSize;
  };
  const Value* find(int64 number) const;
  std::string_view nameOf(const Value& value) const {
    return std::string_view(names_).substr(value.nameStart, value.nameSize);
  }

  std::string name_;
  Templates::vector<Value> values_;  // by number
  std::string names_;                // of all values, so that no value allocates
};

}  // namespace Vantor::MetaMetadata
