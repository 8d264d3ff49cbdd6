#include "Core/MXF/HeaderMetadataReplacement.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <optional>
#include <string>
#include <system_error>

#include "Core/DataIO/FileUpdate.h"
#include "Core/DataIO/Memory.h"
#include "Core/DataIO/UndoJournal.h"
#include "Core/MXF/FileRewriter.h"
#include "Core/MXF/FileStructure.h"
#include "Core/MXF/Fill.h"
#include "Core/MXF/ReplacementPlan.h"
#include "Core/MXF/ReplacementSafety.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor::MXF {

namespace {

using DataIO::File::FileDataSource;
using DataIO::File::FileState;
using DataIO::File::FileUpdate;

constexpr const char* kSourceName = "Core/MXF/HeaderMetadataReplacement";
constexpr uint64 kBufferSize = uint64{1} << 20;
/// Bytes from one call of the progress to the next, at most.
constexpr uint64 kProgressStep = uint64{2} << 20;

std::vector<PlannedReplacement> plan(const Path& file, const FileState& expected,
                                     const MetadataReplacements& replacements) {
  DataIO::File::requireState(file, expected, "cannot change");
  FileDataSource source(file);
  return planReplacements(source, readStructure(source), replacements);
}

void requireRoom(const PlannedReplacement& replacement) {
  if (replacement.fits()) return;
  throw Exceptions::InvalidLength("the header metadata of partition " + std::to_string(replacement.partition) +
                                      " have room for " + std::to_string(replacement.room.size) + " bytes, or for " +
                                      std::to_string(kMinFillSize) + " and more bytes less, but the new ones take " +
                                      std::to_string(replacement.bytes->size()),
                                  kSourceName, __LINE__);
}

/// The new metadata, with fill up to the end of their room.
DataIO::File::NewBytes newBytes(const PlannedReplacement& replacement) {
  DataIO::Memory::MemoryDataSink sink(static_cast<std::size_t>(replacement.room.size));
  sink.write(replacement.bytes->data(), replacement.bytes->size());
  writeFill(sink, replacement.room.size - replacement.bytes->size());
  return {replacement.room.offset, sink.take()};
}

void requireNoJournal(const Path& file) {
  if (!DataIO::File::hasJournal(file)) return;
  throw DataIO::File::ioError("cannot take", file, "an earlier change of it was stopped; recover it first", kSourceName,
                              __LINE__);
}

/// The original, to be locked, if the target is this; renaming over a file takes no permission for it, and would part
/// it from its other names.
std::optional<FileUpdate> openToReplace(const Path& original, const Path& target) {
  std::error_code error;
  if (!std::filesystem::equivalent(original, target, error)) return std::nullopt;
  FileUpdate writable(target);
  DataIO::File::requireOneName(target);
  return writable;
}

/// Tells how many bytes it passes on; not of the last one.
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

uint64 copyBytes(FileDataSource& source, DataIO::DataSink& output, const Progress& progress) {
  ReportingSink reporting(output, source.size(), progress);
  Bytes buffer(kBufferSize);
  while (source.remaining() != 0) {
    const auto size = static_cast<std::size_t>(std::min<uint64>(source.remaining(), buffer.size()));
    source.read(buffer.data(), size);
    reporting.write(buffer.data(), size);
  }
  return source.size();
}

/// Returns the size of the copy, with which the progress has not been called yet.
uint64 writeCopy(const Path& original, const FileState& expected, const MetadataReplacements& replacements,
                 DataIO::DataSink& output, const Progress& progress) {
  requireNoJournal(original);
  DataIO::File::requireState(original, expected, "cannot copy");
  FileDataSource source(original);
  if (replacements.empty()) return copyBytes(source, output, progress);
  const FileStructure structure = readStructure(source);
  const auto planned = planReplacements(source, structure, replacements);
  refuseUnlisted(source, structure);
  FileRewriter rewriter(source, structure, planned);
  ReportingSink reporting(output, rewriter.size(), progress);
  rewriter.write(reporting);
  return rewriter.size();
}

void endCopy(const Path& original, const FileState& expected, uint64 size, const Progress& progress) {
  if (progress) progress(size, size);
  requireNoJournal(original);
  DataIO::File::requireState(original, expected, "cannot copy");
}

}  // namespace

bool fits(const Path& file, const FileState& expected, const MetadataReplacements& replacements) {
  const auto planned = plan(file, expected, replacements);
  return std::all_of(planned.begin(), planned.end(), [](const PlannedReplacement& one) { return one.fits(); });
}

void replaceInPlace(const Path& file, const FileState& expected, const MetadataReplacements& replacements) {
  const auto planned = plan(file, expected, replacements);
  for (const auto& replacement : planned) requireRoom(replacement);
  std::vector<DataIO::File::NewBytes> changes;
  std::transform(planned.begin(), planned.end(), std::back_inserter(changes), newBytes);
  DataIO::File::changeInPlace(file, expected, changes);
}

void rewrite(const Path& original, const FileState& expected, const MetadataReplacements& replacements,
             DataIO::DataSink& output, const Progress& progress) {
  const uint64 size = writeCopy(original, expected, replacements, output, progress);
  endCopy(original, expected, size, progress);
}

DataIO::File::Durability rewrite(const Path& original, const FileState& expected,
                                 const MetadataReplacements& replacements, const Path& target,
                                 const Progress& progress) {
  requireNoJournal(target);  // it would be taken for one of the new file
  auto replaced = openToReplace(original, target);
  DataIO::File::AtomicFile file(target);
  const uint64 size = writeCopy(original, expected, replacements, file, progress);
  // Of two edits, the one that gets the lock later finds the file changed; it is held until the renaming is done.
  const auto lastCheck = [&] {
    if (replaced) replaced->lock();
    endCopy(original, expected, size, progress);
    if (!DataIO::File::kReplacesOpenFiles) replaced.reset();
  };
  return file.commit(DataIO::File::Durability::kSurvivesPowerFailure, lastCheck);
}

}  // namespace Vantor::MXF
