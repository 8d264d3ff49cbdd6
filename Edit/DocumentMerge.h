#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Core/Platform/Exceptions.h"
#include "Edit/Merge.h"
#include "LosslessXML.h"

namespace Vantor::Edit {

/// The document shares no package with the file; or shows none, and describes another state than that of the file.
class DocumentOfOtherFile : public Exceptions::InvalidFormat {
 public:
  using InvalidFormat::InvalidFormat;
};

/// The file has changed since the document was exported.
class FileHasChanged : public Exceptions::InvalidFormat {
 public:
  using InvalidFormat::InvalidFormat;
};

/// How a document is merged. One that describes itself needs none of these.
struct MergeOptions {
  /// For a document without description: whether it is an export of the structural sets only, not of all sets.
  bool isStructuralOnly = false;
  /// For a document without description: the set that it starts from, as `PartitionMetadata::find` takes it; empty for
  /// the Preface.
  std::string start = {};
  /// Merge a document even if it shares no package with the file, or shows none and describes another state.
  bool mergesOtherFile = false;
  /// Refuse a document when the file has changed since the export, instead of taking the file as it is now as the base.
  bool expectsUnchanged = false;
};

/// A document in another form than XML, which describes the state that it was exported from, or does not.
struct SetsOfDocument {
  std::function<void(PartitionMetadata& partition)> read;  ///< adds the sets; exceptions pass
  std::optional<uint64> digest = {};                       ///< `digestOf` the state; none when it does not have it
  /// The set that the document starts from: it has this one, what that leads to, and what no reference leads to. None
  /// for all sets.
  std::optional<Types::UUID> start = {};
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
  std::vector<LosslessXML::FurtherDiagnostics> furtherDiagnostics = {};
  bool isOfEarlierState = false;
};

/// Reads the sets of a document that was exported from a partition.
/// @param ours  the partition as it is now.
/// @throws Exceptions::InvalidFormat when sets of two kinds in ours share an InstanceUID; what
/// `LosslessXML::Document::import` throws.
EditedDocument readDocument(const LosslessXML::Document& document, const PartitionMetadata& ours,
                            const MergeOptions& options);

/// The same for a document in another form.
/// @throws Exceptions::InvalidFormat also when two sets of the document share an InstanceUID that is not shared in
/// ours.
EditedDocument readDocument(const SetsOfDocument& document, const PartitionMetadata& ours);

/// Merges these sets into the partition, which is unchanged when this throws.
/// @throws DocumentOfOtherFile naming a package of each; FileHasChanged; Exceptions::InvalidFormat as `merge`, and when
/// no set of the document could be read, the set that it starts from is missing, or a set has no valid InstanceUID.
MergeReport mergeDocument(const EditedDocument& edited, PartitionMetadata& ours, const MergeOptions& options);

}  // namespace Vantor::Edit
