#pragma once

#include <map>
#include <utility>

#include "Edit/Merge.h"

namespace Vantor::Edit {

/// Merges the edits of KLVs that have no InstanceUID and that the dictionary does not know.
///
/// A KLV that theirs removes is replaced by one of the same key that theirs adds.
class DarkMerge {
 public:
  DarkMerge(const PartitionMetadata& ours, const PartitionMetadata& base, const Theirs& theirs);

  /// Whether theirs has the KLVs of base.
  bool isUnchanged() const { return isUnchanged_; }

  /// Appends a KLV of ours to it again, edited.
  void merge(const KLV::Key& key, uint8 lengthOctets, const Bytes& value, PartitionMetadata& ours, MergeReport& report);
  /// Appends the added KLVs that replace none. To be called last.
  void addNew(PartitionMetadata& ours) const;

 private:
  /// The octets of the length field and those of the value.
  using Coded = std::pair<uint8, Bytes>;

  bool mayRemove_;
  bool isUnchanged_ = true;
  std::map<DarkKey, DarkDifference> edits_;
  std::multimap<KLV::Key, Coded> added_;
};

}  // namespace Vantor::Edit
