#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Core/Platform/Exceptions.h"
#include "Edit/Merge.h"
#include "LosslessXML.h"

namespace Vantor::Edit {

/// A document without any package that the file has.
class DocumentOfOtherFile : public Exceptions::InvalidFormat {
 public:
  using InvalidFormat::InvalidFormat;
};

/// A document of the file as it was before another edit.
class FileHasChanged : public Exceptions::InvalidFormat {
 public:
  using InvalidFormat::InvalidFormat;
};

/// How a document is merged. A document that describes itself needs none of these.
struct MergeOptions {
  /// For a document that does not describe itself: it is an export of structural sets; otherwise it is one of all sets.
  bool isStructuralOnly = false;
  /// For a document that does not describe itself: the set that it starts from, as `PartitionMetadata::find` takes it;
  /// empty for the Preface.
  std::string start = {};
  /// Merge a document although it and the file have different packages.
  bool mergesOtherFile = false;
  /// Refuse a document of an earlier state of the file; otherwise the file as it is now is the base.
  bool expectsUnchanged = false;
};

/// The sets of a document, ready to be merged.
struct EditedDocument {
  std::unique_ptr<PartitionMetadata> partition;
  LosslessXML::Import import;
  DocumentForm form;
  bool isOfEarlierState = false;  ///< whether the file has changed since the export
};

/// What merging a document did, and what it left out.
struct DocumentReport : MergeReport {
  std::vector<LosslessXML::Diagnostic> diagnostics = {};
  bool isOfEarlierState = false;
};

/// Reads the sets of a document of a partition.
/// @param ours  the partition as it is now.
/// @throws Exceptions::InvalidFormat when two kinds of sets of ours share an InstanceUID; what
/// `LosslessXML::Document::import` throws.
EditedDocument readDocument(const LosslessXML::Document& document, const PartitionMetadata& ours,
                            const MergeOptions& options);

/// Merges them into the partition, which stays as it was when this throws.
/// @throws DocumentOfOtherFile naming a package of each, FileHasChanged; Exceptions::InvalidFormat as `merge`, when the
/// document has no set that could be read or lacks the one that it starts from, and when a set of it has no valid
/// InstanceUID.
MergeReport mergeDocument(const EditedDocument& edited, PartitionMetadata& ours, const MergeOptions& options);

}  // namespace Vantor::Edit
