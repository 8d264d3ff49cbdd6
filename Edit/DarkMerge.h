#pragma once

#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "Edit/Merge.h"

namespace Vantor::Edit {

/// Identifies a KLV without InstanceUID by its key and value.
using DarkKey = std::pair<KLV::Key, Bytes>;
/// `writtenLengthOctets` of each of the KLVs with the same content, in file order.
using LengthOctets = std::vector<uint8>;
using DarkKLVs = std::map<DarkKey, LengthOctets>;
/// Without object directories and their roots, which saving makes anew; those of theirs are of no account.
DarkKLVs darkKLVsOf(const PartitionMetadata& partition);

/// How the KLVs with one content differ: in number, and in their length fields.
struct DarkDifference {
  /// For each KLV of the base, the size of its length field in theirs, 0 to keep it as it is; none where it is removed.
  std::vector<std::optional<uint8>> kept;
  LengthOctets added;  ///< of theirs, without those that a KLV of the base stands for

  bool isNone() const;
};
DarkDifference compareDark(const LengthOctets& base, LengthOctets theirs);

/// Merges the edits of KLVs that have no InstanceUID and that the dictionary does not know.
///
/// A KLV that theirs removes is replaced by one of the same key that theirs adds.
class DarkMerge {
 public:
  DarkMerge(const PartitionMetadata& base, const Theirs& theirs);

  /// Whether theirs has the KLVs of base.
  bool isUnchanged() const { return edits_.empty(); }

  /// Appends a KLV of ours to it again, edited. To be called in file order.
  void merge(const KLV::Key& key, uint8 lengthOctets, const Bytes& value, PartitionMetadata& ours, MergeReport& report);
  /// Appends the added KLVs that replace none. To be called last.
  void addNew(PartitionMetadata& ours) const;

 private:
  /// The octets of the length field and those of the value.
  using Coded = std::pair<uint8, Bytes>;

  /// What becomes of the next KLV of ours with this content, as `DarkDifference::kept`.
  std::optional<uint8> nextOf(const DarkKey& content);

  bool mayRemove_;
  std::map<DarkKey, DarkDifference> edits_;
  std::map<DarkKey, std::size_t> merged_;  // how many KLVs of ours are
  std::multimap<KLV::Key, Coded> added_;
};

}  // namespace Vantor::Edit
