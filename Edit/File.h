#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Core/Comparison/PartitionComparison.h"
#include "Core/DataIO/SeekableSource.h"
#include "Core/MXF/PartitionChoice.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Limits.h"
#include "Edit/DocumentMerge.h"
#include "Edit/Save.h"

/// Editing the header metadata of MXF files: read, change, save, and leave everything else alone.
namespace Vantor::Edit {

/// An MXF file whose header metadata are edited.
///
/// Saving changes the metadata of the chosen partition, or of the header partition and of every partition that repeats
/// its metadata, and nothing else: sets and properties that were not edited keep their bytes, local tags, length fields
/// and order; essence and index tables are copied as they are. For one thread at a time. When two objects or programs
/// edit one file, the later save is refused.
class File {
 public:
  /// Opens a file and reads the metadata of one partition, as they are at one moment (`DataIO::File::readInOneState`).
  /// @param dictionary  defines sets and properties.
  /// @param partition   the one to edit; none for the header partition and all that repeat its metadata.
  /// @param limits      of the metadata of each partition that is read, and of documents given as bytes.
  /// @throws Exceptions::ParseError with the offset where the file is damaged; IOError naming the file when it cannot
  /// be read, or when an earlier change of it was stopped half-way (`DataIO::File::recover`).
  File(const Path& path, SharedPtr<const MetaMetadata::Dictionary> dictionary,
       std::optional<MXF::PartitionChoice> partition = {}, const Limits& limits = {});
  /// The same for a file in memory or anywhere else. @param source  outlives this object; nothing else may move it.
  File(DataIO::SeekableSource& source, SharedPtr<const MetaMetadata::Dictionary> dictionary,
       std::optional<MXF::PartitionChoice> partition = {}, const Limits& limits = {});
  ~File();
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  /// The metadata, to read and to edit. Sets keep their addresses until they are removed.
  PartitionMetadata& metadata();

  /// Merges the edits of a document that was exported from this partition. Nothing is changed when this throws.
  /// @return includes what could not be read of the document and was therefore not merged.
  /// @throws DocumentOfOtherFile, FileHasChanged: see `MergeOptions`. Exceptions::ParseError with line and column for
  /// text that is not well-formed XML; InvalidFormat for an edit that cannot be merged.
  DocumentReport mergeDocument(const void* bytes, std::size_t size, const MergeOptions& options = {});
  DocumentReport mergeDocument(const LosslessXML::Document& document, const MergeOptions& options = {});
  /// The same in two steps: reads the sets of a document, then merges them.
  EditedDocument read(const LosslessXML::Document& document, const MergeOptions& options = {});
  EditedDocument read(const SetsOfDocument& document);
  MergeReport merge(const EditedDocument& edited, const MergeOptions& options = {});

  /// How the metadata differ from those in the file.
  PartitionComparison compare();

  /// What saving would write, and what it would find. Completes and signs the metadata as saving does.
  SaveReport preview(const SaveOptions& options = {});
  /// The same, and throws what save() would throw, but for `FileGetsWorse` and for what only writing shows.
  SaveReport rehearse(const SaveOptions& options = {});

  /// Saves into the file itself; writes nothing when nothing is edited. Metadata that fit are written in place, after a
  /// journal beside the file has taken the old bytes, so that a change that stops half-way can be undone. Otherwise the
  /// file is written anew and appears whole or not at all.
  ///
  /// What hangs together with the edit changes with it (`completeEdit`), in `metadata()` too: references to renamed
  /// packages and tracks, the list of descriptive schemes, and the labels in the partition packs: in all of them, or
  /// where one partition is edited, in its own.
  ///
  /// A file that is cut off behind its header metadata, or whose writer may still be at work, is refused, unless
  /// `SaveOptions::isForced`: then it may become longer meanwhile, but its header metadata have to be those that were
  /// read.
  /// @param progress  called while the file is written anew; an exception from it cancels that and leaves the file as
  /// it was.
  /// @throws FileGetsWorse for an edit that breaks a rule; Exceptions::IOError when another program has changed the
  /// file since, when it must not be changed or cannot be written, when its old bytes cannot be kept, and when this
  /// object was made from a source; what `MXF::rewrite` throws.
  SaveReport save(const SaveOptions& options = {}, const MXF::Progress& progress = {});
  /// Writes an edited copy, which appears whole or not at all. When nothing is edited, it has the same bytes.
  SaveReport saveCopy(const Path& target, const SaveOptions& options = {}, const MXF::Progress& progress = {});
  /// Writes an edited copy into a sink.
  SaveReport saveTo(DataIO::DataSink& sink, const SaveOptions& options = {}, const MXF::Progress& progress = {});

 private:
  class State;
  std::unique_ptr<State> state_;
};

}  // namespace Vantor::Edit
