#pragma once

#include <optional>
#include <unordered_set>

#include "Core/KLV/Key.h"
#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor::Registers {

/// Brings identifications into the order that keys and primers have: labels as they are, UUIDs with swapped halves
/// (ST 377-1).
class Identifications {
 public:
  /// @param metadata  its primer decides where an identification could be a UUID in either order.
  explicit Identifications(const PartitionMetadata& metadata);

  /// None for octets that are neither a label nor a UUID.
  std::optional<KLV::Key> keyOf(const KLV::Key& identification) const;

 private:
  std::unordered_set<KLV::Key, KLV::KeyHash> listed_;  // the labels of the primer
};

}  // namespace Vantor::Registers
