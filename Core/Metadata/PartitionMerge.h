#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor {

/// What of an edited partition is no change although it looks like one.
struct MergeRules {
  /// Whether what the edited partition lacks is to be taken out. When it was read from a part of the metadata, or not
  /// all of it could be read, nobody knows whether it was taken out.
  bool mayRemove = true;
  /// Properties that could not be read, as `keyOf` tells them: they stay as they were.
  std::unordered_set<std::string> untouched;

  /// @param instanceUID  of the set.
  /// @param symbol       of the property.
  static std::string keyOf(const Types::UUID& instanceUID, const std::string& symbol);
};

/// What a merge did, for people.
struct MergeSummary {
  std::size_t changedSets = 0;
  std::size_t addedSets = 0;
  std::size_t removedSets = 0;
  std::size_t changedProperties = 0;  ///< of changed sets: given another value, added or removed
  /// Whether the result is, KLV by KLV, what it was made from.
  bool isUnchanged() const { return changedSets + addedSets + removedSets == 0; }
};

/// Brings the edits of a partition to the partition that it was made from, and to nothing else of it.
///
/// What is the same before and after keeps everything that it has in the original: octets, local tags, octets of length
/// fields, order. Sets are told by their InstanceUIDs, which all three partitions share; sets without one, and sets
/// that share theirs with another, stay as they are. Dark KLVs are told by key and octets. New sets come at the end.
///
/// @param original  as read from the file; its primer may get entries when the result is written, the rest does not
///                  change.
/// @param before    what reading an unedited document of the original gives: one partition for each form that the
/// document
///                  may have had, the fullest first. What equals any of them was not edited.
/// @param after     what reading the edited document gives.
/// @param summary   may be null.
/// @return a partition with the original's primer and dictionary.
/// @throws Exceptions::InvalidFormat for a value that the property's definition in the original does not take.
auto_ptr<PartitionMetadata> mergeEdits(const PartitionMetadata& original,
                                       const std::vector<const PartitionMetadata*>& before,
                                       const PartitionMetadata& after, const MergeRules& rules,
                                       MergeSummary* summary = nullptr);

}  // namespace Vantor
