#pragma once

#include <optional>
#include <unordered_set>

#include "Core/KLV/Key.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Registers/MetaDictionary.h"

namespace Vantor::Registers {

/// Brings identifications into the order that keys and primers have: labels as they are, UUIDs with swapped halves
/// (ST 377-1).
class Identifications {
 public:
  /// An identification that could be a UUID in either order has that of most others of its MetaDictionary: of the
  /// UUIDs, or without any that show it, of the labels; or else that of the primer.
  Identifications(const MetaDictionary& file, const PartitionMetadata& metadata);

  /// None for octets that are neither a label nor a UUID.
  std::optional<KLV::Key> keyOf(const KLV::Key& identification) const;

 private:
  std::unordered_set<KLV::Key, KLV::KeyHash> listed_;  // the labels of the primer
  std::optional<bool> areSwapped_;                     // whether the identifications have the other order than keys
};

}  // namespace Vantor::Registers
