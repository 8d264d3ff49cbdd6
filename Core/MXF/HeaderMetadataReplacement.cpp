#include "Core/MXF/HeaderMetadataReplacement.h"

#include <algorithm>
#include <string>

#include "Core/DataIO/File.h"
#include "Core/DataIO/UndoJournal.h"
#include "Core/MXF/FileRewriter.h"
#include "Core/MXF/FileStructure.h"
#include "Core/MXF/Fill.h"
#include "Core/MXF/ReplacementPlan.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor::MXF {

namespace {

using DataIO::File::FileDataSource;
using DataIO::File::FileUpdate;

constexpr const char* kSourceName = "Core/MXF/HeaderMetadataReplacement";

std::vector<PlannedReplacement> plan(const Path& file, const MetadataReplacements& replacements) {
  FileDataSource source(file);
  return planReplacements(source, readStructure(source), replacements);
}

/// Writes to a file from an offset on.
class UpdateSink : public DataIO::DataSink {
 public:
  UpdateSink(FileUpdate& file, uint64 offset) : file_(file), offset_(offset) {}
  void write(const uint8* from, std::size_t size) override {
    file_.write(offset_, from, size);
    offset_ += size;
  }
  uint64 position() const override { return offset_; }

 private:
  FileUpdate& file_;
  uint64 offset_;
};

void requireRoom(const PlannedReplacement& replacement) {
  if (replacement.fits()) return;
  throw Exceptions::InvalidLength("the header metadata of partition " + std::to_string(replacement.partition) +
                                      " have room for " + std::to_string(replacement.room.size) + " bytes, or for " +
                                      std::to_string(kMinFillSize) + " and more bytes less, but the new ones take " +
                                      std::to_string(replacement.bytes->size()),
                                  kSourceName, __LINE__);
}

void writeInto(FileUpdate& file, const PlannedReplacement& replacement) {
  UpdateSink sink(file, replacement.room.offset);
  sink.write(replacement.bytes->data(), replacement.bytes->size());
  writeFill(sink, replacement.room.size - replacement.bytes->size());
}

void requireNoJournal(const Path& file) {
  if (!DataIO::File::hasJournal(file)) return;
  throw DataIO::File::ioError("cannot take", file, "an earlier change of it was stopped; recover it first", kSourceName,
                              __LINE__);
}

void requireState(const Path& file, const DataIO::File::FileState& expected) {
  if (DataIO::File::stateOf(file) == expected) return;
  throw DataIO::File::ioError("cannot copy", file, "another program has changed it meanwhile", kSourceName, __LINE__);
}

}  // namespace

bool fits(const Path& file, const MetadataReplacements& replacements) {
  const auto planned = plan(file, replacements);
  return std::all_of(planned.begin(), planned.end(), [](const PlannedReplacement& one) { return one.fits(); });
}

void replaceInPlace(const Path& file, const MetadataReplacements& replacements) {
  const auto state = DataIO::File::stateOf(file);
  const auto planned = plan(file, replacements);
  std::vector<DataIO::File::Place> places;
  for (const auto& replacement : planned) {
    requireRoom(replacement);
    places.push_back({replacement.room.offset, replacement.room.size});
  }
  DataIO::File::changeInPlace(file, state, places, [&](FileUpdate& update) {
    for (const auto& replacement : planned) writeInto(update, replacement);
  });
}

void rewrite(const Path& original, const MetadataReplacements& replacements, DataIO::DataSink& output,
             const Progress& progress) {
  requireNoJournal(original);
  const auto state = DataIO::File::stateOf(original);
  FileDataSource source(original);
  const FileStructure structure = readStructure(source);
  const auto planned = planReplacements(source, structure, replacements);
  FileRewriter(source, structure, planned).write(output, progress);
  requireState(original, state);
}

void rewrite(const Path& original, const MetadataReplacements& replacements, const Path& target,
             const Progress& progress) {
  requireNoJournal(target);  // it would be taken for one of the new file
  DataIO::File::AtomicFile file(target);
  rewrite(original, replacements, file, progress);
  file.commit(DataIO::File::Durability::kSurvivesPowerFailure);
}

}  // namespace Vantor::MXF
