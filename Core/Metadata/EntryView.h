#pragma once

#include <string_view>

#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor {

/// A view of one KLV of a partition, set or dark set. Valid as long as the entry.
struct EntryView {
  explicit EntryView(const PartitionMetadata::Entry& entry);

  /// Whether the KLV is a dark set or a dark group, of which only the octets are known.
  bool isDark() const { return octets.data() != nullptr; }
  /// The name for messages: the set's symbol, or its key.
  std::string name() const;

  const MetadataSet* set = nullptr;  ///< null for a dark set
  const KLV::Key* key = nullptr;
  std::string_view octets;  ///< the value of a dark set or dark group; data() is null for other sets
  uint8 berLength = 0;
};

}  // namespace Vantor
