#include "Core/MXF/ReplacementSafety.h"

#include "Core/KLV/Keys.h"
#include "Core/MXF/KLVHeader.h"
#include "Core/MXF/RandomIndexPack.h"
#include "Core/Platform/Raise.h"

namespace Vantor::MXF {

namespace {

using DataIO::SeekableSource;
using Exceptions::ParseError;
using Exceptions::raise;

using Reason = Unchecked::Kind;

/// Refuses a file, or notes why it would be refused.
class Refusal {
 public:
  explicit Refusal(std::vector<Unchecked>* unchecked) : unchecked_(unchecked) {}

  /// @param refuse  throws.
  template <class Refuse>
  void operator()(const Unchecked& reason, Refuse&& refuse) const {
    if (unchecked_ == nullptr) refuse();
    unchecked_->push_back(reason);
  }
  bool isForced() const { return unchecked_ != nullptr; }

 private:
  std::vector<Unchecked>* unchecked_;
};

void requireEveryByte(const FileStructure& structure, const Refusal& refusal) {
  for (std::size_t i = 0; i < structure.partitions.size(); ++i) {
    if (!structure.partitions[i].damaged) continue;
    const uint64 offset = structure.partitions[i].offset;
    refusal({Reason::kPack, offset, i},
            [&] { raise<ParseError>("at byte offset {}: the pack of partition {} cannot be read", offset, i); });
  }
  if (structure.end == structure.fileSize) return;
  refusal({Reason::kEnd, structure.end, 0}, [&] {
    raise<ParseError>("at byte offset {}: the file cannot be followed to its end, so that partitions may be missing",
                      structure.end);
  });
}

void requireFooter(const SeekableSource& source, const FileStructure& structure, const Refusal& refusal) {
  const PartitionInfo& header = structure.partitions.front();
  const PartitionInfo& last = structure.partitions.back();
  const bool hasFooter = isFooter(last);
  const uint64 named = header.pack.footerPartition;
  if (named != 0 && !(hasFooter && structure.runIn + named == last.offset)) {
    return refusal({Reason::kMissingFooter, structure.runIn + named, 0}, [&] {
      raise<ParseError>(
          "at byte offset {}: the header partition names a footer partition at {}, where the file, which has {} bytes, "
          "has none",
          header.offset, structure.runIn + named, structure.fileSize);
    });
  }
  if (hasFooter || KLV::isClosed(header.pack.status)) return;
  refusal({Reason::kNoFooter, header.offset, 0}, [&] {
    raise<Exceptions::IOError>(
        "cannot replace header metadata in '{}': its header partition is open and it has no footer partition, so that "
        "its writer is still at work, or never came to an end",
        source.name());
  });
}

/// None also for one that has to stay as it is.
std::optional<MetadataRoom> roomOf(SeekableSource& source, const FileStructure& structure, std::size_t number,
                                   const Refusal& refusal) {
  const auto& partition = structure.partitions[number];
  if (number == 0 || !refusal.isForced()) return findMetadataRoom(source, structure, number);
  if (partition.damaged) return std::nullopt;
  try {
    return findMetadataRoom(source, structure, number);
  } catch (const ParseError&) {
    refusal({Reason::kMetadata, partition.offset, number}, [] {});
    return std::nullopt;
  }
}

void requireIndexedPartitions(SeekableSource& source, const FileStructure& structure) {
  const auto pack = findRandomIndexPack(source, structure.partitions.back().packEnd);
  if (!pack) return;
  readRandomIndexEntries(source, *pack, [&](uint32, uint64 offset) {
    if (partitionAt(structure, structure.runIn + offset)) return;
    raise<ParseError>("at byte offset {}: the random index pack lists a partition at {}, where none is", pack->offset,
                      offset);
  });
}

void requireKnown(const SeekableSource& source, const KLVHeader& klv, std::size_t partition) {
  if (KLV::isPartitionPack(klv.key)) {
    raise<ParseError>(
        "at byte offset {}: a partition pack stands in partition {} that the file does not list, and whose "
        "numbers would be wrong in a file that is written anew",
        klv.offset, partition);
  }
  if (KLV::isRandomIndexPack(klv.key)) {
    raise<ParseError>("at byte offset {}: a random index pack stands in partition {}, and another one behind it",
                      klv.offset, partition);
  }
  refuseDirectory(source, klv, partition);
}

/// Goes from KLV to KLV of a partition.
/// @param mayEndEarly  with zeros.
void requireKnown(SeekableSource& source, std::size_t partition, uint64 end, bool mayEndEarly) {
  while (source.position() < end) {
    if (mayEndEarly && peekKey(source) == KLV::Key()) return;
    const KLVHeader klv = readKLVHeader(source);
    const bool isWhole = klv.valueOffset <= end && klv.length.value <= end - klv.valueOffset;
    if (klv.key == KLV::Key() || !isWhole) {
      raise<ParseError>(
          "at byte offset {}: expected a KLV in partition {}, which ends at {}; what cannot be followed may hide a "
          "partition",
          klv.offset, partition, end);
    }
    requireKnown(source, klv, partition);
    skipValue(klv, source);
  }
}

}  // namespace

std::vector<std::optional<MetadataRoom>> refuseUnsafe(SeekableSource& source, const FileStructure& structure,
                                                      std::vector<Unchecked>* unchecked) {
  const Refusal refusal(unchecked);
  requireEveryByte(structure, refusal);
  requireFooter(source, structure, refusal);
  std::vector<std::optional<MetadataRoom>> rooms;
  for (std::size_t i = 0; i < structure.partitions.size(); ++i) rooms.push_back(roomOf(source, structure, i, refusal));
  // What lists the partitions stands behind them.
  if (structure.end != structure.fileSize) return rooms;
  try {
    requireIndexedPartitions(source, structure);
  } catch (const ParseError&) {
    refusal({Reason::kRandomIndex, structure.end, 0}, [] { throw; });
  }
  return rooms;
}

void refuseUnlisted(SeekableSource& source, const FileStructure& structure,
                    const std::vector<std::optional<MetadataRoom>>& rooms) {
  const auto& partitions = structure.partitions;
  const auto randomIndexPack = findRandomIndexPack(source, partitions.back().packEnd);
  for (std::size_t i = 0; i < partitions.size(); ++i) {
    const bool isLast = i + 1 == partitions.size();
    const uint64 behindLast = randomIndexPack ? randomIndexPack->offset : structure.fileSize;
    source.seek(rooms[i] ? rooms[i]->end() : partitions[i].packEnd);
    requireKnown(source, i, isLast ? behindLast : partitions[i + 1].offset, isLast && !randomIndexPack);
  }
}

}  // namespace Vantor::MXF
