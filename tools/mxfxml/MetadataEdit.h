#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Core/MXF/FileStructure.h"
#include "Core/MXF/HeaderMetadataReplacement.h"
#include "Core/MXF/PartitionChoice.h"
#include "Core/Metadata/PartitionMerge.h"
#include "XML2Partition.h"

namespace Vantor::Tool {

/// The metadata of one partition of an MXF file, and how edits of them come back into the file.
class MetadataEdit {
 public:
  /// @param dictionary  that the document was read with.
  /// @param plain       the same without the user's definitions, which the document may have been made with; null when
  ///                    there are none.
  /// @param partition   the one that was edited; none for the header partition and all that repeat its metadata.
  /// @throws what reading the file throws.
  MetadataEdit(Path file, SharedPtr<const MetaMetadata::Dictionary> dictionary,
               const SharedPtr<const MetaMetadata::Dictionary>& plain, std::optional<MXF::PartitionChoice> partition);

  /// As they are in the file.
  PartitionMetadata& metadata() { return *original_; }

  /// Merges what an edited document gives. @param import  what its reader could not read is left as it is.
  /// @throws CommandError when the document cannot be one of these metadata: it has no set, another Preface, or an
  /// InstanceUID that cannot be read.
  void apply(const PartitionMetadata& edited, const XML2Partition::LosslessImport& import);

  /// What was edited, in a line.
  std::string summary() const;
  /// What the user should know besides, each in a line.
  const std::vector<std::string>& remarks() const { return remarks_; }

  /// Puts the edits into the file itself, whose other bytes stay where they are if there is room; otherwise the file is
  /// written anew. Does nothing when nothing was edited. This and writeCopy() refuse a file that was changed since the
  /// constructor began to read it, and end without a trace when a signal stops the copying.
  void writeInPlace(const MXF::Progress& progress) const;
  /// Writes a copy of the file with the edits; with the same bytes when nothing was edited.
  void writeCopy(const Path& target, const MXF::Progress& progress) const;

 private:
  /// Adds what documents of structural sets only give, if the edited one may be such a document.
  void addStructuralForms(const PartitionMetadata& edited);
  void replace(std::size_t partition, const PartitionMetadata& original, const PartitionMetadata& edited,
               MergeSummary* summary);
  void replaceRepetitions(const PartitionMetadata& edited);
  std::size_t numberOfPartition() const;

  Path file_;
  DataIO::File::FileState state_;  // before the first look into the file
  SharedPtr<const MetaMetadata::Dictionary> dictionary_;
  std::optional<MXF::PartitionChoice> partition_;
  MXF::FileStructure structure_;
  std::unique_ptr<PartitionMetadata> original_;
  std::vector<std::unique_ptr<PartitionMetadata>> forms_;  // what the document gave before it was edited
  MergeRules rules_;
  MergeSummary summary_;
  MXF::MetadataReplacements replacements_;
  std::vector<std::string> remarks_;
};

}  // namespace Vantor::Tool
