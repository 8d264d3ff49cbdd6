#include "Core/MXF/ReplacementSafety.h"

#include <string>

#include "Core/KLV/Keys.h"
#include "Core/MXF/KLVHeader.h"
#include "Core/MXF/RandomIndexPack.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor::MXF {

namespace {

using DataIO::File::FileDataSource;

constexpr const char* kSourceName = "Core/MXF/ReplacementSafety";

[[noreturn]] void throwParseError(uint64 offset, const std::string& message, int line) {
  throw Exceptions::ParseError(DataIO::atOffset(offset) + message, kSourceName, line);
}

void requireEveryByte(const FileStructure& structure) {
  for (std::size_t i = 0; i < structure.partitions.size(); ++i) {
    if (!structure.partitions[i].damaged) continue;
    throwParseError(structure.partitions[i].offset, "the pack of partition " + std::to_string(i) + " cannot be read",
                    __LINE__);
  }
  if (structure.end != structure.fileSize) {
    throwParseError(structure.end, "the file cannot be followed to its end, so that partitions may be missing",
                    __LINE__);
  }
}

void requireFooter(const FileDataSource& source, const FileStructure& structure) {
  const PartitionInfo& header = structure.partitions.front();
  const PartitionInfo& last = structure.partitions.back();
  const bool hasFooter = last.pack.kind == KLV::PartitionKind::kFooter;
  const uint64 named = header.pack.footerPartition;
  if (named != 0 && !(hasFooter && structure.runIn + named == last.offset)) {
    throwParseError(header.offset,
                    "the header partition names a footer partition at " + std::to_string(structure.runIn + named) +
                        ", where the file, which has " + std::to_string(structure.fileSize) + " bytes, has none",
                    __LINE__);
  }
  if (hasFooter || KLV::isClosed(header.pack.status)) return;
  throw DataIO::File::ioError(
      "cannot replace header metadata in", source.path(),
      "its header partition is open and it has no footer partition, so that its writer is still "
      "at work, or never came to an end",
      kSourceName, __LINE__);
}

void requireIndexedPartitions(FileDataSource& source, const FileStructure& structure) {
  const auto pack = findRandomIndexPack(source, structure.partitions.back().packEnd);
  if (!pack) return;
  readRandomIndexEntries(source, *pack, [&](uint32, uint64 offset) {
    if (partitionAt(structure, structure.runIn + offset)) return;
    throwParseError(pack->offset,
                    "the random index pack lists a partition at " + std::to_string(offset) + ", where none is",
                    __LINE__);
  });
}

void requireKnown(const FileDataSource& source, const KLVHeader& klv, std::size_t partition) {
  if (KLV::isPartitionPack(klv.key)) {
    throwParseError(klv.offset,
                    "a partition pack stands in partition " + std::to_string(partition) +
                        " that the file does not list, and what it says would be wrong in a file that is written anew",
                    __LINE__);
  }
  if (KLV::isRandomIndexPack(klv.key)) {
    throwParseError(
        klv.offset,
        "a random index pack stands in partition " + std::to_string(partition) + ", and another one behind it",
        __LINE__);
  }
  refuseDirectory(source, klv, partition);
}

/// Goes from KLV to KLV of a partition.
/// @param mayEndEarly  with zeros.
void requireKnown(FileDataSource& source, std::size_t partition, uint64 end, bool mayEndEarly) {
  while (source.position() < end) {
    if (mayEndEarly && peekKey(source) == KLV::Key()) return;
    const KLVHeader klv = readKLVHeader(source);
    const bool isWhole = klv.valueOffset <= end && klv.length.value <= end - klv.valueOffset;
    if (klv.key == KLV::Key() || !isWhole) {
      throwParseError(klv.offset,
                      "expected a KLV in partition " + std::to_string(partition) + ", which ends at " +
                          std::to_string(end) + "; what cannot be followed may hide a partition",
                      __LINE__);
    }
    requireKnown(source, klv, partition);
    skipValue(klv, source);
  }
}

}  // namespace

std::vector<std::optional<MetadataRoom>> refuseUnsafe(FileDataSource& source, const FileStructure& structure) {
  requireEveryByte(structure);
  requireFooter(source, structure);
  std::vector<std::optional<MetadataRoom>> rooms;
  for (std::size_t i = 0; i < structure.partitions.size(); ++i) rooms.push_back(findMetadataRoom(source, structure, i));
  requireIndexedPartitions(source, structure);
  return rooms;
}

void refuseUnlisted(FileDataSource& source, const FileStructure& structure) {
  const auto& partitions = structure.partitions;
  const auto randomIndexPack = findRandomIndexPack(source, partitions.back().packEnd);
  for (std::size_t i = 0; i < partitions.size(); ++i) {
    const bool isLast = i + 1 == partitions.size();
    const uint64 behindLast = randomIndexPack ? randomIndexPack->offset : structure.fileSize;
    source.seek(partitions[i].packEnd);
    requireKnown(source, i, isLast ? behindLast : partitions[i + 1].offset, isLast && !randomIndexPack);
  }
}

}  // namespace Vantor::MXF
