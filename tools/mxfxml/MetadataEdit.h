#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Core/MXF/FileStructure.h"
#include "Core/MXF/HeaderMetadataReplacement.h"
#include "Core/MXF/PartitionChoice.h"
#include "DocumentForms.h"
#include "Edit/PartitionMerge.h"
#include "LosslessXML.h"

namespace Vantor::Tool {

/// The metadata of one partition of an MXF file, and how edits of them come back into the file.
class MetadataEdit {
 public:
  /// @param dictionary  that the document was read with.
  /// @param plain       the same without the user's definitions, which the document may have been made with; null when
  ///                    there are none.
  /// @param partition   the one that was edited; none for the header partition and all that repeat its metadata.
  /// @throws CommandError when two different sets share an InstanceUID; what reading the file throws.
  MetadataEdit(const Path& file, SharedPtr<const MetaMetadata::Dictionary> dictionary,
               SharedPtr<const MetaMetadata::Dictionary> plain, std::optional<MXF::PartitionChoice> partition);

  /// As they are in the file.
  PartitionMetadata& metadata() { return forms_.original(); }

  /// Finds out what kind of document was edited. To be called before `apply`.
  /// @param import  loses the diagnostics that an unedited document has as well.
  /// @param scope   what the user says of the document.
  void takeForm(const PartitionMetadata& edited, LosslessXML::Import& import, DocumentForms::Scope scope);

  /// Whether it is known which partition a document was exported from: the one that was chosen.
  enum class Origin { kKnown, kGuessed };

  /// Merges what an edited document gives. @param import  what its reader could not read is left as it is.
  /// @throws CommandError when the document cannot be one of these metadata: it has no set, another Preface, or an
  /// InstanceUID that cannot be read; when nobody can tell what an edit means or which sets the document is an export
  /// of, or, where the origin is guessed, when the document is as close to those of another partition.
  void apply(const PartitionMetadata& edited, const LosslessXML::Import& import, Origin origin);

  /// What was edited, in a line.
  std::string summary() const;
  /// What the user should know besides, each in a line.
  const std::vector<std::string>& remarks() const { return remarks_; }

  /// Puts the edits into the file itself, whose other bytes stay where they are if there is room; otherwise the file is
  /// written anew. Does nothing when nothing was edited. This and writeCopy() refuse a file that was changed since the
  /// constructor began to read it, and end without a trace when a signal stops the copying. They return what
  /// MXF::rewrite() does.
  DataIO::File::Durability writeInPlace(const MXF::Progress& progress) const;
  /// Writes a copy of the file with the edits; with the same bytes when nothing was edited.
  DataIO::File::Durability writeCopy(const Path& target, const MXF::Progress& progress) const;

 private:
  /// How the metadata of another partition repeat those of the header partition.
  struct Repetition {
    SharedPtr<const Bytes> bytes = {};  ///< what replaces them; null when nothing does
    std::string difference = {};        ///< empty when they are the same
    std::string help = {};              ///< what the option for the partition would do
  };

  /// Returns the bytes of the edited metadata; null when nothing is edited.
  SharedPtr<const Bytes> merge(const PartitionMetadata& original, const DocumentContent& edited, MergeSummary& done);
  void replaceRepetitions(const DocumentContent& edited, const LosslessXML::Import& import, Origin origin);
  Repetition repetitionIn(std::size_t partition, const DocumentContent& edited, const LosslessXML::Import& import,
                          Origin origin);
  void requireCloserToHeader(DocumentForms& other, std::size_t partition, const DocumentContent& edited,
                             const LosslessXML::Import& import) const;
  /// The same partition that reading the metadata takes.
  std::size_t numberOfPartition() const;
  void tellOther(std::size_t partition, const std::string& difference, const std::string& help);
  /// How many sets neither the edited document shows nor one in its form that nobody has edited.
  std::size_t countLeftOut(const PartitionMetadata& edited);
  void requireClearScope(const PartitionMetadata& edited);
  void tellPart(const PartitionMetadata& edited);
  /// @param help  told where there is too much to name it.
  void tellKept(const std::string& reason, const std::string& help);
  void tellUntaken();

  Path file_;
  DataIO::File::FileState state_;  // before the first look into the file
  SharedPtr<const MetaMetadata::Dictionary> dictionary_;
  SharedPtr<const MetaMetadata::Dictionary> plain_;
  std::optional<MXF::PartitionChoice> partition_;
  MXF::FileStructure structure_;
  MXF::PartitionInfo chosen_;  // which of the partitions reading the metadata takes
  DocumentForms forms_;
  DocumentForms::Scope scope_ = DocumentForms::Scope::kGuessed;
  DocumentForms::Choice unedited_{};  // what the document was before it was edited
  MergeRules rules_;
  MergeSummary summary_;
  MXF::MetadataReplacements replacements_;
  std::vector<std::string> remarks_;
};

}  // namespace Vantor::Tool
