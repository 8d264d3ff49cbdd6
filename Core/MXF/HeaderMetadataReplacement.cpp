#include "Core/MXF/HeaderMetadataReplacement.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>

#include "Core/DataIO/FileUpdate.h"
#include "Core/DataIO/Memory.h"
#include "Core/DataIO/Pieces.h"
#include "Core/DataIO/UndoJournal.h"
#include "Core/MXF/FileRewriter.h"
#include "Core/MXF/Fill.h"
#include "Core/MXF/ReplacementPlan.h"
#include "Core/MXF/ReplacementSafety.h"
#include "Core/Platform/Raise.h"

namespace Vantor::MXF {

namespace {

using DataIO::SeekableSource;
using DataIO::File::FileDataSource;
using DataIO::File::FileState;
using DataIO::File::FileUpdate;
using Exceptions::InvalidLength;
using Exceptions::IOError;
using Exceptions::raise;

/// Bytes from one call of the progress to the next, at most.
constexpr uint64 kProgressStep = uint64{2} << 20;

void requireRoom(const PlannedMetadata& metadata, std::size_t partition) {
  if (fits(metadata)) return;
  raise<InvalidLength>(
      "the header metadata of partition {} have room for {} bytes, or for {} and more bytes less, but the new ones "
      "take {}",
      partition, metadata.room.size, kMinFillSize, metadata.size());
}

void requireRoom(const PlannedPack& pack, std::size_t partition) {
  if (fits(pack)) return;
  raise<InvalidLength>(
      "the pack of partition {} has room for {} bytes, or for {} and more bytes less, but the new one takes {}",
      partition, pack.room.size, kMinFillSize, pack.size());
}

void writeAt(uint64, const PlannedPack& pack, DataIO::DataSink& sink) { pack.write(sink); }
void writeAt(uint64 offset, const PlannedMetadata& metadata, DataIO::DataSink& sink) { metadata.write(offset, sink); }

/// The new bytes, with fill up to the end of their room.
template <class Planned>
DataIO::File::NewBytes newBytes(const Planned& planned) {
  DataIO::Memory::MemoryDataSink sink(static_cast<std::size_t>(planned.room.size));
  writeAt(planned.room.offset, planned, sink);
  writeFill(sink, planned.room.size - planned.size());
  return {planned.room.offset, sink.take()};
}

/// What changes in place, in file order.
std::vector<DataIO::File::NewBytes> newBytes(const ReplacementPlan& plan) {
  std::vector<DataIO::File::NewBytes> changes;
  for (std::size_t i = 0; i < plan.partitions.size(); ++i) {
    const auto& [pack, metadata] = plan.partitions[i];
    if (pack) requireRoom(*pack, i);
    if (metadata) requireRoom(*metadata, i);
    if (pack) changes.push_back(newBytes(*pack));
    if (metadata) changes.push_back(newBytes(*metadata));
  }
  return changes;
}

void requireNoJournal(const Path& file) { DataIO::File::requireNoOpenChange(file, "cannot take"); }

/// The original, to be locked, if it is the target. Renaming over a file needs no permission for it, and would part it
/// from its other names.
std::optional<FileUpdate> openToReplace(const Path& original, const Path& target) {
  std::error_code error;
  if (!std::filesystem::equivalent(original, target, error)) return std::nullopt;
  FileUpdate writable(target);
  DataIO::File::requireOneName(target);
  return writable;
}

/// Reports the bytes that it passes on, except the last one.
class ReportingSink : public DataIO::DataSink {
 public:
  ReportingSink(DataIO::DataSink& sink, uint64 total, const Progress& progress)
      : sink_(sink), total_(total), progress_(progress) {}

  void write(const uint8* from, std::size_t size) override {
    sink_.write(from, size);
    written_ += size;
    if (progress_ && written_ >= next_ && written_ < total_) report();
  }
  uint64 position() const override { return sink_.position(); }

 private:
  void report() {
    progress_(written_, total_);
    next_ = written_ + std::clamp<uint64>(total_ / 100, 1, kProgressStep);
  }

  DataIO::DataSink& sink_;
  uint64 total_;
  const Progress& progress_;
  uint64 written_ = 0;
  uint64 next_ = 1;
};

ReplacementPlan planRewriting(SeekableSource& source, const Replacements& replacements) {
  if (replacements.isForced) {
    raise<IOError>(
        "cannot write '{}' anew: it is cut off, or its writer is still at work; only what fits in place can be changed",
        source.name());
  }
  ReplacementPlan plan = planReplacements(source, replacements);
  refuseUnlisted(source, plan.structure, plan.rooms);
  planMovedDirectories(source, plan);
  return plan;
}

/// Returns the size of the copy, with which the progress has not been called yet.
uint64 writeCopy(SeekableSource& source, const Replacements& replacements, DataIO::DataSink& output,
                 const Progress& progress) {
  if (replacements.isEmpty()) {
    ReportingSink reporting(output, source.size(), progress);
    source.seek(0);
    DataIO::copyBytes(source, source.size(), reporting);
    return source.size();
  }
  const ReplacementPlan plan = planRewriting(source, replacements);
  FileRewriter rewriter(source, plan);
  ReportingSink reporting(output, rewriter.size(), progress);
  rewriter.write(reporting);
  return rewriter.size();
}

uint64 writeCopy(const Path& original, const FileState& expected, const Replacements& replacements,
                 DataIO::DataSink& output, const Progress& progress) {
  requireNoJournal(original);
  DataIO::File::requireState(original, expected, "cannot copy");
  FileDataSource source(original);
  return writeCopy(source, replacements, output, progress);
}

/// @param isLocked  whether the caller holds the lock of the original.
void endCopy(const Path& original, const FileState& expected, uint64 size, const Progress& progress,
             bool isLocked = false) {
  if (progress) progress(size, size);
  if (isLocked) {
    DataIO::File::requireNoStoppedChange(original, "cannot take");
  } else {
    requireNoJournal(original);
  }
  DataIO::File::requireState(original, expected, "cannot copy");
}

DataIO::File::Durability replaceByForce(const Path& file, const FileState& expected, const Replacements& replacements,
                                        DataIO::File::OldBytes oldBytes) {
  std::vector<DataIO::File::NewBytes> changes;
  std::vector<Bytes> present;
  {
    FileDataSource source(file);
    changes = newBytes(planReplacements(source, replacements));
    for (const auto& change : changes) present.push_back(readRoom(source, {change.offset, change.bytes.size()}));
  }
  if (replacements.lastCheck) replacements.lastCheck();
  if (changes.empty()) return DataIO::File::Durability::kSurvivesPowerFailure;
  return DataIO::File::changeGrowingFile(file, expected, changes, present, oldBytes);
}

}  // namespace

bool fits(SeekableSource& file, const Replacements& replacements) {
  const auto plan = planReplacements(file, replacements);
  return std::all_of(plan.partitions.begin(), plan.partitions.end(), [](const PlannedPartition& one) {
    return (!one.pack || fits(*one.pack)) && (!one.metadata || fits(*one.metadata));
  });
}

DataIO::File::Durability replaceInPlace(const Path& file, const FileState& expected, const Replacements& replacements,
                                        DataIO::File::OldBytes oldBytes) {
  if (replacements.isForced) return replaceByForce(file, expected, replacements, oldBytes);
  DataIO::File::requireState(file, expected, "cannot change");
  std::vector<DataIO::File::NewBytes> changes;
  {
    FileDataSource source(file);
    changes = newBytes(planReplacements(source, replacements));
  }
  if (changes.empty()) return DataIO::File::Durability::kSurvivesPowerFailure;
  return DataIO::File::changeInPlace(file, expected, changes, {}, oldBytes);
}

void requireReplaceable(const Path& file, const FileState& expected, const Replacements& replacements) {
  DataIO::File::requireNoOpenChange(file, "cannot change");
  if (replacements.isForced) {
    DataIO::File::requireGrownFrom(file, expected, "cannot change");
  } else {
    DataIO::File::requireState(file, expected, "cannot change");
  }
  const FileUpdate writable(file);
  DataIO::File::requireOneName(file);
  FileDataSource source(file);
  if (!fits(source, replacements)) FileRewriter(source, planRewriting(source, replacements));
}

void rewrite(SeekableSource& original, const Replacements& replacements, DataIO::DataSink& output,
             const Progress& progress) {
  const uint64 size = writeCopy(original, replacements, output, progress);
  if (progress) progress(size, size);
}

void rewrite(const Path& original, const FileState& expected, const Replacements& replacements,
             DataIO::DataSink& output, const Progress& progress) {
  const uint64 size = writeCopy(original, expected, replacements, output, progress);
  endCopy(original, expected, size, progress);
}

DataIO::File::Durability rewrite(const Path& original, const FileState& expected, const Replacements& replacements,
                                 const Path& target, const Progress& progress) {
  requireNoJournal(target);  // it would be taken for that of the new file
  auto replaced = openToReplace(original, target);
  DataIO::File::AtomicFile file(target);
  const uint64 size = writeCopy(original, expected, replacements, file, progress);
  // Of two edits, the one that gets the lock later finds the file changed; it is held until the renaming is done.
  const auto lastCheck = [&] {
    if (replaced) replaced->lock();
    endCopy(original, expected, size, progress, replaced.has_value());
    if (!DataIO::File::kReplacesOpenFiles) replaced.reset();
  };
  return file.commit(DataIO::File::Durability::kSurvivesPowerFailure, lastCheck);
}

}  // namespace Vantor::MXF
