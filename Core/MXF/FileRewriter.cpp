#include "Core/MXF/FileRewriter.h"

#include <algorithm>

#include "Core/DataIO/Pieces.h"
#include "Core/MXF/Fill.h"
#include "Core/MXF/RandomIndexPack.h"
#include "Core/Platform/Raise.h"

namespace Vantor::MXF {

namespace {

/// How many bytes a pack or header metadata, with the fill behind them, take in a copy of the file: their old room
/// where they fit, else the fewest that differ from that by a multiple of the KAG size.
template <class Planned>
uint64 sizeInCopy(const Planned& planned, uint32 kagSize, std::size_t partition) {
  if (fits(planned)) return planned.room.size;
  if (kagSize > kMaxKAGSize) {
    Exceptions::raise<Exceptions::InvalidLength>(
        "partition {} cannot be padded to a KAG of {} bytes; more than {} are taken for damage", partition, kagSize,
        kMaxKAGSize);
  }
  const uint64 step = std::max<uint32>(kagSize, 1);
  const uint64 needed = planned.size();
  uint64 size = needed + (planned.room.size % step + step - needed % step) % step;
  while (!canFill(size - needed)) size += step;
  return size;
}

}  // namespace

FileRewriter::FileRewriter(DataIO::SeekableSource& source, const ReplacementPlan& plan)
    : source_(source), plan_(plan), structure_(plan.structure), targets_(plan.partitions.size()) {
  uint64 shift = 0;  // wraps around where the copy is shorter
  for (std::size_t i = 0; i < targets_.size(); ++i) place(i, shift);
  total_ = structure_.fileSize + shift;
}

void FileRewriter::place(std::size_t number, uint64& shift) {
  const PartitionInfo& partition = structure_.partitions[number];
  const auto& [pack, metadata] = plan_.partitions[number];
  Target& target = targets_[number];
  target.offset = partition.offset + shift;
  if (pack) {
    target.packSize = sizeInCopy(*pack, partition.pack.kagSize, number);
    shift += target.packSize - pack->room.size;
  }
  if (!metadata) return;
  target.metadata = metadata->room.offset + shift;
  target.metadataSize = sizeInCopy(*metadata, partition.pack.kagSize, number);
  shift += target.metadataSize - metadata->room.size;
}

void FileRewriter::write(DataIO::DataSink& output) {
  const auto randomIndexPack = findRandomIndexPack(source_, structure_.partitions.back().packEnd);
  source_.seek(0);
  for (std::size_t i = 0; i < targets_.size(); ++i) {
    copyTo(structure_.partitions[i].offset, output);
    writePack(i, output);
    if (plan_.partitions[i].metadata) writeMetadata(i, output);
  }
  if (randomIndexPack) {
    copyTo(randomIndexPack->valueOffset, output);
    writeRandomIndexEntries(*randomIndexPack, output);
  }
  copyTo(structure_.fileSize, output);
}

void FileRewriter::writePack(std::size_t number, DataIO::DataSink& output) {
  const PartitionPack pack = packOf(number);
  if (const auto& planned = plan_.partitions[number].pack) {
    PlannedPack{planned->room, planned->key, pack, planned->lengthOctets}.write(output);
    writeFill(output, targets_[number].packSize - planned->size());
    return source_.seek(planned->room.end());
  }
  const KLVHeader klv = readKLVHeader(source_);
  writeKLVHeader(output, klv.key, klv.length.value, klv.length.octets);
  pack.render(output);
  source_.seek(structure_.partitions[number].packEnd);
}

/// Everything but the numbers and labels that change stays: versions, essence containers.
PartitionPack FileRewriter::packOf(std::size_t number) const {
  const auto& planned = plan_.partitions[number].pack;
  PartitionPack pack = planned ? planned->pack : structure_.partitions[number].pack;
  const bool namesFooter = pack.footerPartition != 0 && isFooter(structure_.partitions.back());
  pack.thisPartition = targets_[number].offset - structure_.runIn;
  pack.previousPartition = number == 0 ? 0 : targets_[number - 1].offset - structure_.runIn;
  pack.footerPartition = namesFooter ? targets_.back().offset - structure_.runIn : 0;
  if (plan_.partitions[number].metadata) pack.headerByteCount = targets_[number].metadataSize;
  return pack;
}

void FileRewriter::writeMetadata(std::size_t number, DataIO::DataSink& output) {
  const PlannedMetadata& planned = *plan_.partitions[number].metadata;
  copyTo(planned.room.offset, output);
  planned.write(targets_[number].metadata, output);
  writeFill(output, targets_[number].metadataSize - planned.size());
  source_.seek(planned.room.end());
}

void FileRewriter::writeRandomIndexEntries(const KLVHeader& pack, DataIO::DataSink& output) {
  readRandomIndexEntries(source_, pack, [&](uint32 bodySID, uint64 offset) {
    const auto number = partitionAt(structure_, structure_.runIn + offset);
    DataIO::writeBigEndian<uint32>(output, bodySID);
    DataIO::writeBigEndian<uint64>(output, number ? targets_[*number].offset - structure_.runIn : offset);
  });
}

void FileRewriter::copyTo(uint64 end, DataIO::DataSink& output) {
  if (source_.position() < end) DataIO::copyBytes(source_, end - source_.position(), output);
}

}  // namespace Vantor::MXF
