#pragma once

#include <map>
#include <utility>

#include "Core/Comparison/DocumentDifference.h"
#include "Edit/PartitionMerge.h"

namespace Vantor {

/// Brings the edits of KLVs that have no InstanceUID, and that the dictionary does not know, to a merged partition.
///
/// What is there before but not after is replaced by what is there after but not before, under the same key.
class DarkMerge {
 public:
  /// @param original  gives the KLVs that `merge` gets.
  DarkMerge(const PartitionMetadata& original, const UneditedDocuments& documents, const PartitionMetadata& edited,
            const MergeRules& rules);

  /// Adds a KLV of the original to the result as the edit leaves it, if it does.
  void merge(const DarkMetadataSet& set, PartitionMetadata& result, MergeSummary& summary);
  void merge(const DarkParsedGroup& set, PartitionMetadata& result, MergeSummary& summary);
  /// Adds what the original has nothing to be replaced for. To be called last.
  void addNew(PartitionMetadata& result, MergeSummary& summary) const;

 private:
  using Edits = DocumentDifference::DarkDifference;
  /// The octets of the length field and those of the value.
  using Coded = std::pair<uint8, Bytes>;

  struct KLVView;
  void merge(const KLVView& klv, PartitionMetadata& result, MergeSummary& summary);
  void replace(const KLVView& klv, PartitionMetadata& result, MergeSummary& summary);

  bool mayRemove_;
  std::map<DocumentDifference::DarkKey, Edits> edits_;  // of which nothing is added
  std::multimap<KLV::Key, Coded> added_;
};

}  // namespace Vantor
