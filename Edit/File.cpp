#include "Edit/File.h"

#include <utility>

#include "Core/DataIO/Crc64.h"
#include "Core/DataIO/Memory.h"
#include "Core/DataIO/OneState.h"
#include "Core/DataIO/Pieces.h"
#include "Core/DataIO/UndoJournal.h"
#include "Core/MXF/FileStructure.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/MXF/MetadataRoom.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Raise.h"
#include "Edit/SavePlan.h"

namespace Vantor::Edit {

namespace {

using DataIO::File::FileDataSource;
using Exceptions::IOError;
using Exceptions::raise;

const Path& withoutStoppedChange(const Path& path) {
  DataIO::File::requireNoOpenChange(path, "cannot edit");
  return path;
}

}  // namespace

class File::State {
 public:
  State(const Path& path, SharedPtr<const MetaMetadata::Dictionary> dictionary,
        std::optional<MXF::PartitionChoice> partition, const Limits& limits)
      : limits_(limits),
        path_(withoutStoppedChange(path)),
        fileState_(DataIO::File::stateOf(path)),  // before anything is read from the file
        dictionary_(std::move(dictionary)),
        choice_(partition),
        file_(std::make_unique<FileDataSource>(path)),
        source_(file_.get()) {
    take(DataIO::File::readInOneState(path, [this](DataIO::SeekableSource& source) { return read(source); }));
  }
  State(DataIO::SeekableSource& source, SharedPtr<const MetaMetadata::Dictionary> dictionary,
        std::optional<MXF::PartitionChoice> partition, const Limits& limits)
      : limits_(limits), dictionary_(std::move(dictionary)), choice_(partition), source_(&source) {
    take(read(source));
  }

  PartitionMetadata& metadata() { return *metadata_; }
  const Limits& limits() const { return limits_; }

  PartitionComparison compare() {
    if (isStale_) reopen();
    return comparePartitions(*base(), *metadata_, Pairing::kByIdentifier);
  }

  SavePlan plan(const SaveOptions& options) {
    if (isStale_) reopen();
    const bool mayGrow = options.isForced && path_;
    if (mayGrow) requireSameMetadata();
    auto plan = planSave({*source_, dictionary_, choice_, chosen_, end_, *metadata_, limits_}, options, signedBy_);
    if (mayGrow) plan.replacements.lastCheck = [this] { requireSameMetadata(); };
    return plan;
  }

  SaveReport rehearse(const SaveOptions& options) {
    const Path& path = requirePath();
    auto plan = this->plan(options);
    if (plan.replacements.isEmpty()) return plan.report;
    if (!MXF::fits(*source_, plan.replacements)) requireNothingKept(options);
    MXF::requireReplaceable(path, fileState_, plan.replacements);
    return plan.report;
  }

  SaveReport save(const SaveOptions& options, const MXF::Progress& progress) {
    const Path& path = requirePath();
    auto plan = acceptedPlan(options);
    if (plan.replacements.isEmpty()) return plan.report;
    const auto oldBytes = options.keepsUndo ? DataIO::File::OldBytes::kKeep : DataIO::File::OldBytes::kDrop;
    if (MXF::fits(*source_, plan.replacements)) {
      plan.report.durability = MXF::replaceInPlace(path, fileState_, plan.replacements, oldBytes);
    } else {
      if (plan.replacements.isForced) MXF::requireReplaceable(path, fileState_, plan.replacements);  // which throws
      requireNothingKept(options);
      plan.report.durability = rewriteItself(path, plan.replacements, progress);
    }
    fileState_ = DataIO::File::stateOf(path);
    isStale_ = true;
    signedBy_.reset();
    return plan.report;
  }

  SaveReport saveCopy(const Path& target, const SaveOptions& options, const MXF::Progress& progress) {
    auto plan = acceptedPlan(options);
    if (path_) {
      plan.report.durability = MXF::rewrite(*path_, fileState_, plan.replacements, target, progress);
    } else {
      DataIO::File::AtomicFile file(target);
      MXF::rewrite(*source_, plan.replacements, file, progress);
      plan.report.durability = file.commit(DataIO::File::Durability::kSurvivesPowerFailure);
    }
    return plan.report;
  }

  SaveReport saveTo(DataIO::DataSink& sink, const SaveOptions& options, const MXF::Progress& progress) {
    auto plan = acceptedPlan(options);
    if (path_) {
      MXF::rewrite(*path_, fileState_, plan.replacements, sink, progress);
    } else {
      MXF::rewrite(*source_, plan.replacements, sink, progress);
    }
    return plan.report;
  }

 private:
  /// What is read of the file when it is opened.
  struct Opened {
    MXF::PartitionInfo chosen;
    std::unique_ptr<PartitionMetadata> metadata;
    uint64 end;
    uint64 check;
  };
  Opened read(DataIO::SeekableSource& source) const {
    Opened opened;
    opened.chosen = MXF::findPartition(source, choice_.value_or(MXF::PartitionChoice()));
    opened.metadata = MXF::readHeaderMetadata(source, dictionary_, opened.chosen, limits_);
    opened.end = source.position();
    opened.check = checkOf(source, opened.chosen, opened.end);
    return opened;
  }

  void take(Opened opened) {
    chosen_ = std::move(opened.chosen);
    metadata_ = std::move(opened.metadata);
    end_ = opened.end;
    check_ = opened.check;
    reserveDarkTags(*metadata_);
  }

  /// Of the partition pack and the metadata.
  static uint64 checkOf(DataIO::SeekableSource& source, const MXF::PartitionInfo& partition, uint64 end) {
    DataIO::Crc64 check;
    source.seek(partition.offset);
    DataIO::copyBytes(source, end - partition.offset, check);
    return check.value();
  }

  /// Of a file that its writer may be changing elsewhere.
  void requireSameMetadata() const {
    FileDataSource source(*path_);
    if (source.size() >= end_ && checkOf(source, chosen_, end_) == check_) return;
    raise<IOError>("cannot change '{}': another program has changed its header metadata meanwhile; begin anew",
                   source.name());
  }

  /// Brings all but the metadata up to date with the changed file; the metadata are what was just written to it.
  void reopen() {
    openFile();
    chosen_ = MXF::findPartition(*source_, choice_.value_or(MXF::PartitionChoice()));
    const auto structure = MXF::readStructure(*source_);
    end_ = MXF::findMetadataRoom(*source_, structure, numberOf(chosen_, structure))->end();
    check_ = checkOf(*source_, chosen_, end_);
    isStale_ = false;
  }

  /// @throws FileGetsWorse.
  SavePlan acceptedPlan(const SaveOptions& options) {
    auto plan = this->plan(options);
    auto refused = refusedFindings(plan.report, options);
    if (!refused.empty()) throw FileGetsWorse(std::move(refused));
    return plan;
  }

  DataIO::File::Durability rewriteItself(const Path& path, const MXF::Replacements& replacements,
                                         const MXF::Progress& progress) {
    file_.reset();  // some systems do not replace open files
    try {
      return MXF::rewrite(path, fileState_, replacements, path, progress);
    } catch (...) {
      openFile();
      throw;
    }
  }

  void requireNothingKept(const SaveOptions& options) const {
    if (!options.keepsUndo) return;
    raise<IOError>(
        "cannot keep the old bytes of '{}': the edit does not fit in place, so that the file would be written anew; "
        "save a copy",
        Platform::pathToUTF8(*path_));
  }

  void openFile() {
    file_ = std::make_unique<FileDataSource>(*path_);
    source_ = file_.get();
  }

  const Path& requirePath() const {
    if (path_) return *path_;
    raise<IOError>("a file that was opened from a source has no place to be saved to; save a copy of it");
  }

  /// The metadata as they are in the file.
  std::unique_ptr<PartitionMetadata> base() { return MXF::readHeaderMetadata(*source_, dictionary_, chosen_, limits_); }

  const Limits limits_;
  std::optional<Path> path_;
  DataIO::File::FileState fileState_;
  SharedPtr<const MetaMetadata::Dictionary> dictionary_;
  std::optional<MXF::PartitionChoice> choice_;
  std::unique_ptr<FileDataSource> file_;
  DataIO::SeekableSource* source_;
  MXF::PartitionInfo chosen_;
  bool isStale_ = false;  // source and places are those of the file before it was saved
  uint64 end_ = 0;        // of the metadata in the file
  uint64 check_ = 0;      // of their bytes
  std::unique_ptr<PartitionMetadata> metadata_;
  std::optional<Types::UUID> signedBy_;  // the Identification of the edits that are not saved yet
};

File::File(const Path& path, SharedPtr<const MetaMetadata::Dictionary> dictionary,
           std::optional<MXF::PartitionChoice> partition, const Limits& limits)
    : state_(std::make_unique<State>(path, std::move(dictionary), partition, limits)) {}

File::File(DataIO::SeekableSource& source, SharedPtr<const MetaMetadata::Dictionary> dictionary,
           std::optional<MXF::PartitionChoice> partition, const Limits& limits)
    : state_(std::make_unique<State>(source, std::move(dictionary), partition, limits)) {}

File::~File() = default;

PartitionMetadata& File::metadata() { return state_->metadata(); }

EditedDocument File::read(const LosslessXML::Document& document, const MergeOptions& options) {
  return readDocument(document, metadata(), options);
}

EditedDocument File::read(const SetsOfDocument& document) { return readDocument(document, metadata()); }

MergeReport File::merge(const EditedDocument& edited, const MergeOptions& options) {
  return Edit::mergeDocument(edited, metadata(), options);
}

DocumentReport File::mergeDocument(const LosslessXML::Document& document, const MergeOptions& options) {
  auto edited = read(document, options);
  DocumentReport report{merge(edited, options)};
  report.diagnostics = std::move(edited.import.diagnostics);
  report.furtherDiagnostics = std::move(edited.import.furtherDiagnostics);
  report.isOfEarlierState = edited.isOfEarlierState;
  return report;
}

DocumentReport File::mergeDocument(const void* bytes, std::size_t size, const MergeOptions& options) {
  return mergeDocument(LosslessXML::Document::fromBytes(bytes, size, state_->limits()), options);
}

PartitionComparison File::compare() { return state_->compare(); }
SaveReport File::preview(const SaveOptions& options) { return state_->plan(options).report; }
SaveReport File::rehearse(const SaveOptions& options) { return state_->rehearse(options); }
SaveReport File::save(const SaveOptions& options, const MXF::Progress& progress) {
  return state_->save(options, progress);
}
SaveReport File::saveCopy(const Path& target, const SaveOptions& options, const MXF::Progress& progress) {
  return state_->saveCopy(target, options, progress);
}
SaveReport File::saveTo(DataIO::DataSink& sink, const SaveOptions& options, const MXF::Progress& progress) {
  return state_->saveTo(sink, options, progress);
}

}  // namespace Vantor::Edit
