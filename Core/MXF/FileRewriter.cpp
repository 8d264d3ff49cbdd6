#include "Core/MXF/FileRewriter.h"

#include <algorithm>

#include "Core/DataIO/BigEndian.h"
#include "Core/KLV/Keys.h"
#include "Core/MXF/Fill.h"
#include "Core/MXF/RandomIndexPack.h"

namespace Vantor::MXF {

namespace {

using DataIO::File::FileDataSource;

constexpr std::size_t kBufferSize = std::size_t{1} << 20;

// Where numbers stand in the value of a partition pack (ST 377-1), 64 bits each.
constexpr std::size_t kThisPartition = 8;
constexpr std::size_t kPreviousPartition = 16;
constexpr std::size_t kFooterPartition = 24;
constexpr std::size_t kHeaderByteCount = 32;

}  // namespace

FileRewriter::FileRewriter(FileDataSource& source, const FileStructure& structure,
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

void FileRewriter::write(DataIO::DataSink& output) {
  output_ = &output;
  buffer_.resize(kBufferSize);
  const auto randomIndexPack = findRandomIndexPack(source_, structure_.partitions.back().packEnd);
  source_.seek(0);
  for (std::size_t i = 0; i < targets_.size(); ++i) writePartition(i);
  if (randomIndexPack) {
    copyTo(randomIndexPack->offset);
    writeRandomIndexPack(*randomIndexPack);
  }
  copyTo(structure_.fileSize);
  output_ = nullptr;
}

void FileRewriter::writePartition(std::size_t number) {
  copyTo(structure_.partitions[number].offset);
  writePack(number);
  if (targets_[number].replacement != nullptr) writeReplacement(targets_[number]);
}

/// Everything but the numbers that change stays: length field, versions, essence containers.
void FileRewriter::writePack(std::size_t number) {
  const PartitionInfo& partition = structure_.partitions[number];
  const Target& target = targets_[number];
  const KLVHeader klv = readKLVHeader(source_);
  Bytes pack(static_cast<std::size_t>(partition.packEnd - partition.offset));
  source_.seek(partition.offset);
  source_.read(pack.data(), pack.size());

  uint8* const value = pack.data() + (klv.valueOffset - klv.offset);
  const bool namesFooter =
      partition.pack.footerPartition != 0 && structure_.partitions.back().pack.kind == KLV::PartitionKind::kFooter;
  const auto set = [&](std::size_t at, uint64 n) { DataIO::writeBigEndian<uint64>(value + at, n); };
  set(kThisPartition, target.offset - structure_.runIn);
  set(kPreviousPartition, number == 0 ? 0 : targets_[number - 1].offset - structure_.runIn);
  set(kFooterPartition, namesFooter ? targets_.back().offset - structure_.runIn : 0);
  if (target.replacement != nullptr) set(kHeaderByteCount, target.metadataSize);
  output_->write(pack.data(), pack.size());
}

void FileRewriter::writeReplacement(const Target& target) {
  const PlannedReplacement& replacement = *target.replacement;
  copyTo(replacement.room.offset);
  output_->write(replacement.bytes->data(), replacement.bytes->size());
  writeFill(*output_, target.metadataSize - replacement.bytes->size());
  source_.seek(replacement.room.end());
}

void FileRewriter::writeRandomIndexPack(const KLVHeader& pack) {
  Bytes header(static_cast<std::size_t>(pack.valueOffset - pack.offset));
  source_.read(header.data(), header.size());
  output_->write(header.data(), header.size());
  readRandomIndexEntries(source_, pack, [&](uint32 bodySID, uint64 offset) {
    const auto number = partitionAt(structure_, structure_.runIn + offset);
    DataIO::writeBigEndian<uint32>(*output_, bodySID);
    DataIO::writeBigEndian<uint64>(*output_, number ? targets_[*number].offset - structure_.runIn : offset);
  });
}

void FileRewriter::copyTo(uint64 end) {
  while (source_.position() < end) {
    const auto size = static_cast<std::size_t>(std::min<uint64>(end - source_.position(), buffer_.size()));
    source_.read(buffer_.data(), size);
    output_->write(buffer_.data(), size);
  }
}

}  // namespace Vantor::MXF
