#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor {

/// What reading a document of a partition gives. The partition outlives it.
struct DocumentContent {
  const PartitionMetadata* partition = nullptr;
  /// Its sets that have no InstanceUID in the document. Those that they have here are made up.
  std::unordered_set<const MetadataSet*> unnamed = {};
  /// Properties that the document has, but that could not be read, as `keyOf` tells them.
  std::unordered_set<std::string> unread = {};

  /// @param instanceUID  of the set.
  /// @param symbol       of the property.
  static std::string keyOf(const Types::UUID& instanceUID, const std::string& symbol);
};

/// What documents of a partition give that nobody has edited.
struct UneditedDocuments {
  /// In the form of the edited document: what differs from this one was edited.
  const DocumentContent& shown;
  /// The form that leaves out the least, for sets that the edited document has and its form has not.
  const DocumentContent& full;
};

struct MergeRules {
  /// Whether what the edited document lacks is to be taken out. When not all of it could be read, nobody knows whether
  /// it was taken out.
  bool mayRemove = true;
};

/// A set or a property of it, for people.
struct MergePlace {
  std::string set;       ///< the symbol, with the InstanceUID when there is one
  std::string property;  ///< empty for the set itself
};

/// A set that was edited and stays as it is.
struct UntakenEdit {
  std::string set;     ///< as in `MergePlace`
  std::string reason;  ///< why nobody can tell which set is meant, such as "it has no InstanceUID"
};

/// What a merge did, for people.
struct MergeSummary {
  std::size_t changedSets = 0;
  std::size_t addedSets = 0;
  std::size_t removedSets = 0;
  std::size_t changedProperties = 0;  ///< of changed sets: given another value, added or removed
  /// What the edited document lacks, and what stays because nothing may be removed.
  std::vector<MergePlace> kept = {};
  std::vector<UntakenEdit> untaken = {};
  /// Whether the result is, KLV by KLV, what it was made from.
  bool isUnchanged() const { return changedSets + addedSets + removedSets == 0; }
};

/// An edit of which nobody can tell what it means, because the document does not show all that it is about. A document
/// that does not nest sets shows it.
class UnclearEdit : public Exceptions::InvalidFormat {
 public:
  using InvalidFormat::InvalidFormat;
};

/// Brings the edits of a document to the partition that the document was made from, and to nothing else of it.
///
/// What is the same before and after keeps everything that it has in the original: octets, local tags, octets of length
/// fields, order. Sets are told by their InstanceUIDs, which the original and the documents share; sets without one,
/// and sets that share theirs with another, stay as they are. Dark KLVs are told by key and octets. New sets come at
/// the end. References that the form of the document does not show stay (`mergeReferences`).
///
/// @param original  as read from the file; its primer may get entries when the result is written, the rest does not
///                  change.
/// @param edited    what reading the edited document gives.
/// @param summary   may be null.
/// @return a partition with the original's primer and dictionary.
/// @throws UnclearEdit naming set and property: a property with a single reference or with none left was edited, which
///         the document does not show, or a set was taken out that such a reference leads to.
/// @throws Exceptions::InvalidFormat for a value that the property's definition in the original does not take.
auto_ptr<PartitionMetadata> mergeEdits(const PartitionMetadata& original, const UneditedDocuments& documents,
                                       const DocumentContent& edited, const MergeRules& rules,
                                       MergeSummary* summary = nullptr);

/// How many sets and properties an edited document has otherwise than one that nobody has edited; 0 for no edit.
std::size_t countEdits(const DocumentContent& unedited, const DocumentContent& edited);

}  // namespace Vantor
