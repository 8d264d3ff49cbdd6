#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Core/DataIO/File.h"
#include "Core/DataIO/SeekableSource.h"
#include "Core/MXF/HeaderMetadataReplacement.h"
#include "Core/MXF/PartitionChoice.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Edit/Changes.h"
#include "Edit/DocumentMerge.h"
#include "Edit/LongValues.h"

/// Editing the header metadata of MXF files: read, change, save, with nothing else changed.
namespace Vantor::Edit {

/// A partition with other metadata than the header partition, which it keeps.
struct UneditedPartition {
  enum class Reason {
    kOtherMetadata,     ///< its metadata differ from those of the header partition
    kOtherInstanceUIDs  ///< they have the same content under other InstanceUIDs
  };
  std::size_t number;  ///< in file order; 0 is the header partition
  Reason reason;
};

/// What saving writes, or wrote.
struct SaveReport {
  Changes changes = {};                          ///< of the metadata of the edited partition
  std::size_t partitions = 0;                    ///< whose metadata are replaced; 0 when nothing is edited
  std::vector<UneditedPartition> unedited = {};  ///< only where the header partition is edited
  std::vector<LongValue> longValues = {};
  /// What the written file is worth when the power fails; of no meaning for a sink.
  DataIO::File::Durability durability = DataIO::File::Durability::kSurvivesPowerFailure;
};

/// An MXF file whose header metadata are edited.
///
/// Saving changes the metadata of the chosen partition, or of the header partition and of every partition that repeats
/// its metadata, and nothing else: sets and properties that were not edited keep their bytes, local tags, length fields
/// and order; essence and index tables are copied as they are. One thread at a time may use it. Two objects, or
/// programs, that edit one file at a time: the one that saves later is refused.
class File {
 public:
  /// Opens a file and reads the metadata of one partition.
  /// @param dictionary  names sets and properties.
  /// @param partition   the one to edit; none for the header partition and all that repeat its metadata.
  /// @throws Exceptions::ParseError with the offset where the file is damaged; IOError naming the file when it cannot
  /// be read, or when an earlier change of it was stopped half-way (`DataIO::File::recover`).
  File(const Path& path, SharedPtr<const MetaMetadata::Dictionary> dictionary,
       std::optional<MXF::PartitionChoice> partition = {});
  /// The same of a file in memory or anywhere else. @param source  outlives this; nothing else moves it.
  File(DataIO::SeekableSource& source, SharedPtr<const MetaMetadata::Dictionary> dictionary,
       std::optional<MXF::PartitionChoice> partition = {});
  ~File();
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  /// The metadata, to be read and edited. Sets keep their addresses until they are removed.
  PartitionMetadata& metadata();

  /// Merges the edits of a document that was exported from this partition; the sets stay as they were when it throws.
  /// @return also what could not be read of the document, and so was not merged.
  /// @throws DocumentOfOtherFile, FileHasChanged: see `MergeOptions`. Exceptions::ParseError with line and column for
  /// what is no XML; InvalidFormat for an edit that cannot be.
  DocumentReport mergeDocument(const void* bytes, std::size_t size, const MergeOptions& options = {});
  DocumentReport mergeDocument(const LosslessXML::Document& document, const MergeOptions& options = {});
  /// The two steps of this: the sets of a document, then the merge.
  EditedDocument read(const LosslessXML::Document& document, const MergeOptions& options = {});
  MergeReport merge(const EditedDocument& edited, const MergeOptions& options = {});

  /// What saving would write.
  SaveReport preview();

  /// Saves to the file itself. Where the new metadata have room, no other byte moves: the old bytes go into a journal
  /// beside the file first, from which a change that is stopped half-way is undone. Otherwise the file is written anew
  /// and appears whole or not at all. Writes nothing when nothing is edited.
  /// @param progress  called while the file is written anew; what it throws cancels that and leaves the file as it was.
  /// @throws Exceptions::IOError when the file was changed by another program meanwhile, must not be changed or cannot
  /// be written, or this object was made from a source; what `MXF::rewrite` throws.
  SaveReport save(const MXF::Progress& progress = {});
  /// Writes an edited copy, which appears whole or not at all; with the same bytes when nothing is edited.
  SaveReport saveCopy(const Path& target, const MXF::Progress& progress = {});
  /// Writes an edited copy into a sink.
  SaveReport saveTo(DataIO::DataSink& sink, const MXF::Progress& progress = {});

 private:
  class State;
  std::unique_ptr<State> state_;
};

}  // namespace Vantor::Edit
