#include "Core/MXF/HeaderMetadataReplacement.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <optional>
#include <system_error>

#include "Core/DataIO/FileUpdate.h"
#include "Core/DataIO/Memory.h"
#include "Core/DataIO/Pieces.h"
#include "Core/DataIO/UndoJournal.h"
#include "Core/KLV/BERLength.h"
#include "Core/KLV/Keys.h"
#include "Core/MXF/FileStructure.h"
#include "Core/MXF/Fill.h"
#include "Core/MXF/KLVHeader.h"
#include "Core/MXF/MetadataRoom.h"
#include "Core/MXF/RandomIndexPack.h"
#include "Core/MXF/ReplacementSafety.h"
#include "Core/Platform/Raise.h"

namespace Vantor::MXF {

namespace {

using DataIO::SeekableSource;
using DataIO::File::FileDataSource;
using DataIO::File::FileState;
using DataIO::File::FileUpdate;
using Exceptions::InvalidFormat;
using Exceptions::InvalidLength;
using Exceptions::IOError;
using Exceptions::raise;

/// Bytes from one call of the progress to the next, at most.
constexpr uint64 kProgressStep = uint64{2} << 20;

/// A replacement and the room of the header metadata that it replaces.
struct PlannedReplacement {
  std::size_t partition = 0;
  MetadataRoom room;
  const Bytes* bytes = nullptr;  ///< the replacement's; never null

  /// Whether the bytes, and a fill item or nothing behind them, take exactly the room.
  bool fits() const { return bytes->size() <= room.size && canFill(room.size - bytes->size()); }
};

/// The bytes as a reader of the file will go through them.
void requireKLVs(const MetadataReplacement& replacement) {
  DataIO::Memory::MemoryDataSource source(replacement.bytes->data(), replacement.bytes->size());
  for (bool isFirst = true; isFirst || source.remaining() != 0; isFirst = false) {
    const KLVHeader klv = readKLVHeader(source);
    if (isFirst && !KLV::isPrimerPack(klv.key)) {
      raise<InvalidFormat>("the header metadata of partition {} cannot be replaced: the new ones have no primer pack",
                           replacement.partition);
    }
    if (KLV::endsHeaderMetadata(klv.key)) {
      raise<InvalidFormat>(
          "the header metadata of partition {} cannot be replaced: byte {} of the new ones has a key of another part "
          "of MXF",
          replacement.partition, klv.offset);
    }
    source.skip(klv.length.value);
  }
}

void requireMetadata(const MetadataReplacement& replacement) {
  try {
    requireKLVs(replacement);
  } catch (const Exceptions::ParseError& error) {
    raise<InvalidFormat>("the header metadata of partition {} cannot be replaced: the new ones are no KLVs: {}",
                         replacement.partition, error.message());
  }
}

PlannedReplacement plan(const std::vector<std::optional<MetadataRoom>>& rooms, const MetadataReplacement& replacement) {
  if (replacement.partition >= rooms.size()) {
    raise<InvalidFormat>(
        "the header metadata of partition {} cannot be replaced: the file has {} partitions, counted from 0",
        replacement.partition, rooms.size());
  }
  const auto& room = rooms[replacement.partition];
  if (!room) {
    raise<InvalidFormat>("the header metadata of partition {} cannot be replaced: it has none", replacement.partition);
  }
  return {replacement.partition, *room, replacement.bytes.get()};
}

/// The replacements, checked, in the order of their partitions. `replacements` outlives the result.
std::vector<PlannedReplacement> planReplacements(DataIO::SeekableSource& source, const FileStructure& structure,
                                                 const MetadataReplacements& replacements) {
  const auto rooms = refuseUnsafe(source, structure);
  std::vector<PlannedReplacement> planned;
  const Bytes* checked = nullptr;
  for (const auto& replacement : replacements) {
    if (replacement.bytes.get() != checked) requireMetadata(replacement);
    checked = replacement.bytes.get();
    planned.push_back(plan(rooms, replacement));
  }
  std::sort(planned.begin(), planned.end(), [](const PlannedReplacement& left, const PlannedReplacement& right) {
    return left.partition < right.partition;
  });
  for (std::size_t i = 1; i < planned.size(); ++i) {
    if (planned[i].partition != planned[i - 1].partition) continue;
    raise<InvalidFormat>("the header metadata of partition {} cannot be replaced: twice", planned[i].partition);
  }
  return planned;
}

std::vector<PlannedReplacement> plan(SeekableSource& source, const MetadataReplacements& replacements) {
  return planReplacements(source, readStructure(source), replacements);
}

void requireRoom(const PlannedReplacement& replacement) {
  if (replacement.fits()) return;
  raise<InvalidLength>(
      "the header metadata of partition {} have room for {} bytes, or for {} and more bytes less, but the new ones "
      "take {}",
      replacement.partition, replacement.room.size, kMinFillSize, replacement.bytes->size());
}

/// The new metadata, with fill up to the end of their room.
DataIO::File::NewBytes newBytes(const PlannedReplacement& replacement) {
  DataIO::Memory::MemoryDataSink sink(static_cast<std::size_t>(replacement.room.size));
  sink.write(replacement.bytes->data(), replacement.bytes->size());
  writeFill(sink, replacement.room.size - replacement.bytes->size());
  return {replacement.room.offset, sink.take()};
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

/// How many bytes header metadata with the fill behind them take in a copy of the file: their old room where they fit,
/// else the fewest that differ from that by a multiple of the KAG size.
uint64 sizeInCopy(const PlannedReplacement& replacement, uint32 kagSize) {
  if (replacement.fits()) return replacement.room.size;
  if (kagSize > kMaxKAGSize) {
    raise<InvalidLength>("partition {} cannot be padded to a KAG of {} bytes; more than {} are taken for damage",
                         replacement.partition, kagSize, kMaxKAGSize);
  }
  const uint64 step = std::max<uint32>(kagSize, 1);
  const uint64 needed = replacement.bytes->size();
  uint64 size = needed + (replacement.room.size % step + step - needed % step) % step;
  while (!canFill(size - needed)) size += step;
  return size;
}

/// Writes one copy of a file with other header metadata.
class FileRewriter {
 public:
  /// Computes where everything will be.
  FileRewriter(SeekableSource& source, const FileStructure& structure,
               const std::vector<PlannedReplacement>& replacements)
      : source_(source), structure_(structure), targets_(structure.partitions.size()), total_(structure.fileSize) {
    for (const auto& replacement : replacements) {
      Target& target = targets_[replacement.partition];
      target.replacement = &replacement;
      target.metadataSize = sizeInCopy(replacement, structure.partitions[replacement.partition].pack.kagSize);
    }
    uint64 shift = 0;  // wraps around where the copy is shorter
    for (std::size_t i = 0; i < targets_.size(); ++i) {
      targets_[i].offset = structure.partitions[i].offset + shift;
      if (targets_[i].replacement != nullptr) shift += targets_[i].metadataSize - targets_[i].replacement->room.size;
    }
    total_ += shift;
  }

  /// Of the copy, in bytes.
  uint64 size() const { return total_; }

  void write(DataIO::DataSink& output) {
    const auto randomIndexPack = findRandomIndexPack(source_, structure_.partitions.back().packEnd);
    source_.seek(0);
    for (std::size_t i = 0; i < targets_.size(); ++i) {
      copyTo(structure_.partitions[i].offset, output);
      writePack(i, output);
      if (targets_[i].replacement != nullptr) writeReplacement(targets_[i], output);
    }
    if (randomIndexPack) {
      copyTo(randomIndexPack->valueOffset, output);
      writeRandomIndexEntries(*randomIndexPack, output);
    }
    copyTo(structure_.fileSize, output);
  }

 private:
  /// What becomes of one partition.
  struct Target {
    uint64 offset = 0;  ///< of its pack in the copy, run-in included
    const PlannedReplacement* replacement = nullptr;
    uint64 metadataSize = 0;  ///< with the fill behind them; 0 without a replacement
  };

  /// Everything but the numbers that change stays: key, length field, versions, essence containers.
  void writePack(std::size_t number, DataIO::DataSink& output) {
    const PartitionInfo& partition = structure_.partitions[number];
    const Target& target = targets_[number];
    const bool namesFooter = partition.pack.footerPartition != 0 && isFooter(structure_.partitions.back());
    PartitionPack pack = partition.pack;
    pack.thisPartition = target.offset - structure_.runIn;
    pack.previousPartition = number == 0 ? 0 : targets_[number - 1].offset - structure_.runIn;
    pack.footerPartition = namesFooter ? targets_.back().offset - structure_.runIn : 0;
    if (target.replacement != nullptr) pack.headerByteCount = target.metadataSize;
    const KLVHeader klv = readKLVHeader(source_);
    output.write(klv.key.rawBuffer(), KLV::Key::kSize);
    KLV::writeBERLength(output, klv.length.value, klv.length.octets);
    pack.render(output);
    source_.seek(partition.packEnd);
  }

  void writeReplacement(const Target& target, DataIO::DataSink& output) {
    const PlannedReplacement& replacement = *target.replacement;
    copyTo(replacement.room.offset, output);
    output.write(replacement.bytes->data(), replacement.bytes->size());
    writeFill(output, target.metadataSize - replacement.bytes->size());
    source_.seek(replacement.room.end());
  }

  void writeRandomIndexEntries(const KLVHeader& pack, DataIO::DataSink& output) {
    readRandomIndexEntries(source_, pack, [&](uint32 bodySID, uint64 offset) {
      const auto number = partitionAt(structure_, structure_.runIn + offset);
      DataIO::writeBigEndian<uint32>(output, bodySID);
      DataIO::writeBigEndian<uint64>(output, number ? targets_[*number].offset - structure_.runIn : offset);
    });
  }

  void copyTo(uint64 end, DataIO::DataSink& output) {
    if (source_.position() < end) DataIO::copyBytes(source_, end - source_.position(), output);
  }

  SeekableSource& source_;
  const FileStructure& structure_;
  std::vector<Target> targets_;
  uint64 total_;
};

/// Returns the size of the copy, with which the progress has not been called yet.
uint64 writeCopy(SeekableSource& source, const MetadataReplacements& replacements, DataIO::DataSink& output,
                 const Progress& progress) {
  if (replacements.empty()) {
    ReportingSink reporting(output, source.size(), progress);
    source.seek(0);
    DataIO::copyBytes(source, source.size(), reporting);
    return source.size();
  }
  const FileStructure structure = readStructure(source);
  const auto planned = planReplacements(source, structure, replacements);
  refuseUnlisted(source, structure);
  FileRewriter rewriter(source, structure, planned);
  ReportingSink reporting(output, rewriter.size(), progress);
  rewriter.write(reporting);
  return rewriter.size();
}

uint64 writeCopy(const Path& original, const FileState& expected, const MetadataReplacements& replacements,
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

}  // namespace

bool fits(SeekableSource& file, const MetadataReplacements& replacements) {
  const auto planned = plan(file, replacements);
  return std::all_of(planned.begin(), planned.end(), [](const PlannedReplacement& one) { return one.fits(); });
}

DataIO::File::Durability replaceInPlace(const Path& file, const FileState& expected,
                                        const MetadataReplacements& replacements, DataIO::File::OldBytes oldBytes) {
  DataIO::File::requireState(file, expected, "cannot change");
  std::vector<DataIO::File::NewBytes> changes;
  {
    FileDataSource source(file);
    const auto planned = plan(source, replacements);
    for (const auto& replacement : planned) requireRoom(replacement);
    std::transform(planned.begin(), planned.end(), std::back_inserter(changes), newBytes);
  }
  return DataIO::File::changeInPlace(file, expected, changes, {}, oldBytes);
}

void rewrite(SeekableSource& original, const MetadataReplacements& replacements, DataIO::DataSink& output,
             const Progress& progress) {
  const uint64 size = writeCopy(original, replacements, output, progress);
  if (progress) progress(size, size);
}

void rewrite(const Path& original, const FileState& expected, const MetadataReplacements& replacements,
             DataIO::DataSink& output, const Progress& progress) {
  const uint64 size = writeCopy(original, expected, replacements, output, progress);
  endCopy(original, expected, size, progress);
}

DataIO::File::Durability rewrite(const Path& original, const FileState& expected,
                                 const MetadataReplacements& replacements, const Path& target,
                                 const Progress& progress) {
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
