#pragma once

#include <string_view>

#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor {

/// One KLV of a partition, of whichever kind, to read. Valid as long as the entry.
struct EntryView {
  explicit EntryView(const PartitionMetadata::Entry& entry);

  /// Whether nothing is known of the KLV but its octets: a dark set or a dark parsed group.
  bool isDark() const { return octets.data() != nullptr; }
  /// What messages call the KLV: the set's symbol, or its key.
  std::string name() const;

  const MetadataSet* set = nullptr;  ///< null for a dark set
  const KLV::Key* key = nullptr;
  std::string_view octets;  ///< of a dark set's or dark parsed group's value; without address for other sets
  uint8 berLength = 0;
};

}  // namespace Vantor
