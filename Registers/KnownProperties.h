#pragma once

#include <optional>
#include <set>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Core/Dictionary/Definitions.h"
#include "Registers/FileClasses.h"

namespace Vantor::Registers {

/// What the properties of definitions take: static local tags, and names within sets.
class KnownProperties {
 public:
  /// @param definitions  whose texts live as long as this object.
  explicit KnownProperties(const Definitions& definitions);

  bool isTaken(uint16 tag) const { return taken_.count(tag) != 0; }
  void take(uint16 tag) { taken_.insert(tag); }
  /// The static local tag of a property, or 0; none for a property that sets have by several tags.
  std::optional<uint16> tagOf(uint32 property) const;

  /// Whether one of the sets, or a set that one of them inherits from or that inherits from it, has a property of this
  /// name or common name.
  bool hasNameWith(std::string_view name, const std::vector<uint32>& sets, const FileClasses& classes) const;

 private:
  void add(const PropertyUse& use);

  std::set<uint16> taken_;
  std::unordered_map<uint32, std::optional<uint16>> tags_;                // by places of properties
  std::unordered_map<std::string_view, std::vector<uint32>> setsByName_;  // places of sets that list it
};

}  // namespace Vantor::Registers
