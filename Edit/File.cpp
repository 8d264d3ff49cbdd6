#include "Edit/File.h"

#include <algorithm>
#include <utility>

#include "Core/Comparison/PartitionComparison.h"
#include "Core/Comparison/SetPairing.h"
#include "Core/DataIO/Memory.h"
#include "Core/DataIO/UndoJournal.h"
#include "Core/MXF/FileStructure.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "Core/MXF/MetadataRoom.h"
#include "Core/Metadata/EntryView.h"
#include "Core/Metadata/PartitionDictionary.h"
#include "Core/Platform/Raise.h"
#include "Edit/Repetitions.h"

namespace Vantor::Edit {

namespace {

using DataIO::File::FileDataSource;
using Exceptions::IOError;
using Exceptions::raise;

/// What saving will write.
struct Plan {
  SaveReport report;
  MXF::MetadataReplacements replacements;
};

SharedPtr<const Bytes> written(PartitionMetadata& metadata) {
  DataIO::Memory::MemoryDataSink sink;
  MXF::writeHeaderMetadata(metadata, MXF::SetOrder::kFile, sink);
  return std::make_shared<const Bytes>(sink.take());
}

/// Whether the other partition has the same set under the same InstanceUID.
bool hasSame(const MetadataSet& set, const PartitionMetadata& partition, const PartitionMetadata& other) {
  const auto* found = findOnly(other, *set.instanceUID());
  return found != nullptr && areSame(set, partition.partitionDictionary(), *found, other.partitionDictionary());
}

/// Whether the sets of two partitions with the same content have the same InstanceUIDs.
bool haveSameInstanceUIDs(const PartitionMetadata& left, const PartitionMetadata& right) {
  const SetPairing pairing(left, right);
  const auto& pairs = pairing.setPairs();
  return std::all_of(pairs.begin(), pairs.end(), [&](const SetPairing::SetPair& pair) {
    const auto *leftUID = pair.first->instanceUID(), *rightUID = pair.second->instanceUID();
    if (leftUID == nullptr || rightUID == nullptr) return leftUID == rightUID;
    // Sets with the same content that no reference leads to may be paired either way.
    return *leftUID == *rightUID || hasSame(*pair.first, left, right);
  });
}

/// Properties get none of the local tags used in dark sets.
void reserveDarkTags(PartitionMetadata& metadata) {
  auto& tags = metadata.partitionDictionary();
  for (const auto& entry : metadata.entries()) {
    const EntryView view(entry);
    if (!view.isDark()) continue;
    const auto* octets = reinterpret_cast<const uint8*>(view.octets.data());
    Vantor::reserveDarkTags(*view.key, octets, view.octets.size(), tags);
  }
}

const Path& withoutStoppedChange(const Path& path) {
  DataIO::File::requireNoOpenChange(path, "cannot edit");
  return path;
}

}  // namespace

class File::State {
 public:
  State(const Path& path, SharedPtr<const MetaMetadata::Dictionary> dictionary,
        std::optional<MXF::PartitionChoice> partition)
      : path_(withoutStoppedChange(path)),
        fileState_(DataIO::File::stateOf(path)),  // before anything is read from the file
        dictionary_(std::move(dictionary)),
        choice_(partition),
        file_(std::make_unique<FileDataSource>(path)),
        source_(file_.get()) {
    read();
  }
  State(DataIO::SeekableSource& source, SharedPtr<const MetaMetadata::Dictionary> dictionary,
        std::optional<MXF::PartitionChoice> partition)
      : dictionary_(std::move(dictionary)), choice_(partition), source_(&source) {
    read();
  }

  PartitionMetadata& metadata() { return *metadata_; }

  Plan plan() {
    if (isStale_) reopen();
    Plan plan;
    const auto before = bytesInFile();
    const auto after = written(*metadata_);
    plan.report.changes = changesBetween(before, *after, dictionary_);
    if (plan.report.changes.isNone()) return plan;
    plan.report.longValues = longValuesOf(*metadata_);
    const auto structure = MXF::readStructure(*source_);
    plan.replacements.emplace_back(numberIn(structure), after);
    if (!choice_) planRepetitions(structure, after, plan);
    plan.report.partitions = plan.replacements.size();
    return plan;
  }

  SaveReport save(const MXF::Progress& progress) {
    const Path& path = requirePath();
    auto plan = this->plan();
    if (plan.replacements.empty()) return plan.report;
    if (MXF::fits(*source_, plan.replacements)) {
      plan.report.durability = MXF::replaceInPlace(path, fileState_, plan.replacements);
    } else {
      plan.report.durability = rewriteItself(path, plan.replacements, progress);
    }
    fileState_ = DataIO::File::stateOf(path);
    isStale_ = true;
    return plan.report;
  }

  SaveReport saveCopy(const Path& target, const MXF::Progress& progress) {
    auto plan = this->plan();
    if (path_) {
      plan.report.durability = MXF::rewrite(*path_, fileState_, plan.replacements, target, progress);
    } else {
      DataIO::File::AtomicFile file(target);
      MXF::rewrite(*source_, plan.replacements, file, progress);
      plan.report.durability = file.commit(DataIO::File::Durability::kSurvivesPowerFailure);
    }
    return plan.report;
  }

  SaveReport saveTo(DataIO::DataSink& sink, const MXF::Progress& progress) {
    auto plan = this->plan();
    if (path_) {
      MXF::rewrite(*path_, fileState_, plan.replacements, sink, progress);
    } else {
      MXF::rewrite(*source_, plan.replacements, sink, progress);
    }
    return plan.report;
  }

 private:
  void read() {
    chosen_ = MXF::findPartition(*source_, choice_.value_or(MXF::PartitionChoice()));
    metadata_ = MXF::readHeaderMetadata(*source_, dictionary_, chosen_);
    end_ = source_->position();
    reserveDarkTags(*metadata_);
  }

  /// Brings all but the metadata up to date with the changed file; the metadata are what was just written to it.
  void reopen() {
    openFile();
    chosen_ = MXF::findPartition(*source_, choice_.value_or(MXF::PartitionChoice()));
    const auto structure = MXF::readStructure(*source_);
    end_ = MXF::findMetadataRoom(*source_, structure, numberIn(structure))->end();
    isStale_ = false;
  }

  DataIO::File::Durability rewriteItself(const Path& path, const MXF::MetadataReplacements& replacements,
                                         const MXF::Progress& progress) {
    file_.reset();  // some systems do not replace open files
    try {
      return MXF::rewrite(path, fileState_, replacements, path, progress);
    } catch (...) {
      openFile();
      throw;
    }
  }

  void openFile() {
    file_ = std::make_unique<FileDataSource>(*path_);
    source_ = file_.get();
  }

  const Path& requirePath() const {
    if (path_) return *path_;
    raise<IOError>("a file that was opened from a source has no place to be saved to; save a copy of it");
  }

  Bytes bytesInFile() {
    source_->seek(chosen_.packEnd);
    Bytes bytes(static_cast<std::size_t>(end_ - chosen_.packEnd));
    source_->read(bytes.data(), bytes.size());
    return bytes;
  }

  std::size_t numberIn(const MXF::FileStructure& structure) const {
    if (const auto number = MXF::partitionAt(structure, chosen_.offset)) return *number;
    raise<IOError>("the {} at byte offset {} is not among the partitions that the file lists",
                   choice_.value_or(MXF::PartitionChoice()).name(), chosen_.offset);
  }

  void planRepetitions(const MXF::FileStructure& structure, const SharedPtr<const Bytes>& after, Plan& plan) {
    Repetitions repetitions(*source_, structure);
    std::unique_ptr<PartitionMetadata> base;
    SharedPtr<const Bytes> ofLast;
    std::optional<UneditedPartition::Reason> reason;
    for (std::size_t i = 1; i < structure.partitions.size(); ++i) {
      const auto& partition = structure.partitions[i];
      if (partition.damaged || partition.pack.headerByteCount == 0) continue;
      const auto like = repetitions.like(i);
      if (like == Repetitions::Like::kHeader) {
        plan.replacements.emplace_back(i, after);
        continue;
      }
      if (like == Repetitions::Like::kNone) {
        if (base == nullptr) base = MXF::readHeaderMetadata(*source_, dictionary_, chosen_);
        reason.reset();
        ofLast = repetitionOf(*base, partition, reason);
      }
      if (reason) {
        plan.report.unedited.push_back({i, *reason});
      } else if (ofLast != nullptr) {
        plan.replacements.emplace_back(i, ofLast);
      }
    }
  }

  /// The edited metadata of another partition; null, with a reason, when it does not repeat those of the base.
  SharedPtr<const Bytes> repetitionOf(const PartitionMetadata& base, const MXF::PartitionInfo& partition,
                                      std::optional<UneditedPartition::Reason>& reason) {
    const auto other = MXF::readHeaderMetadata(*source_, dictionary_, partition);
    if (!comparePartitions(base, *other).isEqual()) {
      reason = UneditedPartition::Reason::kOtherMetadata;
    } else if (!haveSameInstanceUIDs(base, *other)) {
      reason = UneditedPartition::Reason::kOtherInstanceUIDs;
    } else {
      reserveDarkTags(*other);
      if (Edit::merge(*other, base, {*metadata_}, Scope(base)).rejected.empty()) return written(*other);
      reason = UneditedPartition::Reason::kUnidentifiedSets;
    }
    return nullptr;
  }

  std::optional<Path> path_;
  DataIO::File::FileState fileState_;
  SharedPtr<const MetaMetadata::Dictionary> dictionary_;
  std::optional<MXF::PartitionChoice> choice_;
  std::unique_ptr<FileDataSource> file_;
  DataIO::SeekableSource* source_;
  MXF::PartitionInfo chosen_;
  bool isStale_ = false;  // source and places are those of the file before it was saved
  uint64 end_ = 0;        // of the metadata in the file
  std::unique_ptr<PartitionMetadata> metadata_;
};

File::File(const Path& path, SharedPtr<const MetaMetadata::Dictionary> dictionary,
           std::optional<MXF::PartitionChoice> partition)
    : state_(std::make_unique<State>(path, std::move(dictionary), partition)) {}

File::File(DataIO::SeekableSource& source, SharedPtr<const MetaMetadata::Dictionary> dictionary,
           std::optional<MXF::PartitionChoice> partition)
    : state_(std::make_unique<State>(source, std::move(dictionary), partition)) {}

File::~File() = default;

PartitionMetadata& File::metadata() { return state_->metadata(); }

EditedDocument File::read(const LosslessXML::Document& document, const MergeOptions& options) {
  return readDocument(document, metadata(), options);
}

MergeReport File::merge(const EditedDocument& edited, const MergeOptions& options) {
  return Edit::mergeDocument(edited, metadata(), options);
}

DocumentReport File::mergeDocument(const LosslessXML::Document& document, const MergeOptions& options) {
  auto edited = read(document, options);
  DocumentReport report{merge(edited, options)};
  report.diagnostics = std::move(edited.import.diagnostics);
  report.isOfEarlierState = edited.isOfEarlierState;
  return report;
}

DocumentReport File::mergeDocument(const void* bytes, std::size_t size, const MergeOptions& options) {
  return mergeDocument(LosslessXML::Document::fromBytes(bytes, size), options);
}

SaveReport File::preview() { return state_->plan().report; }
SaveReport File::save(const MXF::Progress& progress) { return state_->save(progress); }
SaveReport File::saveCopy(const Path& target, const MXF::Progress& progress) {
  return state_->saveCopy(target, progress);
}
SaveReport File::saveTo(DataIO::DataSink& sink, const MXF::Progress& progress) {
  return state_->saveTo(sink, progress);
}

}  // namespace Vantor::Edit
