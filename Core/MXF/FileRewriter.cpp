#include "Core/MXF/FileRewriter.h"

#include "Core/DataIO/Pieces.h"
#include "Core/KLV/BERLength.h"
#include "Core/KLV/Keys.h"
#include "Core/MXF/Fill.h"
#include "Core/MXF/RandomIndexPack.h"

namespace Vantor::MXF {

FileRewriter::FileRewriter(DataIO::SeekableSource& source, const FileStructure& structure,
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

/// Everything but the numbers that change stays: key, length field, versions, essence containers.
void FileRewriter::writePack(std::size_t number) {
  const PartitionInfo& partition = structure_.partitions[number];
  const Target& target = targets_[number];
  const bool namesFooter =
      partition.pack.footerPartition != 0 && structure_.partitions.back().pack.kind == KLV::PartitionKind::kFooter;
  PartitionPack pack = partition.pack;
  pack.thisPartition = target.offset - structure_.runIn;
  pack.previousPartition = number == 0 ? 0 : targets_[number - 1].offset - structure_.runIn;
  pack.footerPartition = namesFooter ? targets_.back().offset - structure_.runIn : 0;
  if (target.replacement != nullptr) pack.headerByteCount = target.metadataSize;
  const KLVHeader klv = readKLVHeader(source_);
  output_->write(klv.key.rawBuffer(), KLV::Key::kSize);
  KLV::writeBERLength(*output_, klv.length.value, klv.length.octets);
  pack.render(*output_);
  source_.seek(partition.packEnd);
}

void FileRewriter::writeReplacement(const Target& target) {
  const PlannedReplacement& replacement = *target.replacement;
  copyTo(replacement.room.offset);
  output_->write(replacement.bytes->data(), replacement.bytes->size());
  writeFill(*output_, target.metadataSize - replacement.bytes->size());
  source_.seek(replacement.room.end());
}

void FileRewriter::writeRandomIndexPack(const KLVHeader& pack) {
  DataIO::copyBytes(source_, pack.valueOffset - pack.offset, *output_);
  readRandomIndexEntries(source_, pack, [&](uint32 bodySID, uint64 offset) {
    const auto number = partitionAt(structure_, structure_.runIn + offset);
    DataIO::writeBigEndian<uint32>(*output_, bodySID);
    DataIO::writeBigEndian<uint64>(*output_, number ? targets_[*number].offset - structure_.runIn : offset);
  });
}

void FileRewriter::copyTo(uint64 end) {
  if (source_.position() < end) DataIO::copyBytes(source_, end - source_.position(), *output_);
}

}  // namespace Vantor::MXF
