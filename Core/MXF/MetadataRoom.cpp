#include "Core/MXF/MetadataRoom.h"

#include "Core/DataIO/Pieces.h"
#include "Core/KLV/Keys.h"
#include "Core/Platform/Raise.h"

namespace Vantor::MXF {

namespace {

using DataIO::SeekableSource;
using Exceptions::ParseError;
using Exceptions::raise;

class RoomFinder {
 public:
  RoomFinder(SeekableSource& source, const FileStructure& structure, std::size_t number)
      : source_(source), partition_(structure.partitions[number]), number_(number) {
    const bool isLast = number + 1 == structure.partitions.size();
    partitionEnd_ = isLast ? structure.end : structure.partitions[number + 1].offset;
  }

  std::optional<MetadataRoom> find() {
    source_.seek(partition_.packEnd);
    while (KLV::isFill(peekKey(source_))) skipValue(readKLVHeader(source_), source_);
    const bool hasPrimer = source_.position() < partitionEnd_ && KLV::isPrimerPack(peekKey(source_));
    if (partition_.pack.headerByteCount == 0 && !hasPrimer) {
      skipToEssence();
      return std::nullopt;
    }
    if (!hasPrimer) {
      raise<ParseError>("at byte offset {}: expected the primer pack of partition {}, found another key",
                        source_.position(), number_);
    }
    MetadataRoom room{source_.position(), partition_.pack.headerByteCount};
    requireWholeKLVs(room);
    requireNoSetsBehind();
    skipToEssence();
    return room;
  }

 private:
  void requireWholeKLVs(MetadataRoom& room) {
    if (room.size > partitionEnd_ - room.offset) {
      raise<ParseError>("at byte offset {}: partition {} counts {} bytes of header metadata, but ends at {}",
                        source_.position(), number_, room.size, partitionEnd_);
    }
    while (source_.position() < room.end()) {
      if (KLV::endsHeaderMetadata(peekKey(source_))) refuseCount(room);
      const KLVHeader klv = readKLVHeader(source_);
      room.hasObjectDirectory = room.hasObjectDirectory || KLV::isOfObjectDirectory(klv.key);
      skipValue(klv, source_);
      if (!valueFits(klv, source_)) refuseCount(room);
    }
    if (source_.position() != room.end()) refuseCount(room);
  }

  /// Up to the index tables and the essence, to neither of which a set belongs.
  void requireNoSetsBehind() {
    while (source_.position() < partitionEnd_ && !KLV::endsHeaderMetadata(peekKey(source_))) {
      if (KLV::isLocalSet(peekKey(source_))) {
        raise<ParseError>(
            "at byte offset {}: a set stands behind the header metadata of partition {}, as its partition pack counts "
            "them",
            source_.position(), number_);
      }
      skipKLV();
    }
  }

  /// KLVs among the essence, which may be long, are left to refuseUnlisted().
  void skipToEssence() {
    while (source_.position() < partitionEnd_) {
      const KLV::Key key = peekKey(source_);
      if (KLV::endsHeaderMetadata(key) && !KLV::isIndexTableSegment(key)) return;
      skipKLV();
    }
  }

  /// Of what is no header metadata.
  void skipKLV() {
    const KLVHeader klv = readKLVHeader(source_);
    refuseDirectory(source_, klv, number_);
    skipValue(klv, source_);
  }

  [[noreturn]] void refuseCount(const MetadataRoom& room) const {
    raise<ParseError>(
        "at byte offset {}: partition {} counts {} bytes of header metadata from byte offset {} on, which do not end "
        "with a KLV of them",
        source_.position(), number_, room.size, room.offset);
  }

  SeekableSource& source_;
  const PartitionInfo& partition_;
  std::size_t number_;
  uint64 partitionEnd_ = 0;
};

}  // namespace

std::optional<MetadataRoom> findMetadataRoom(SeekableSource& source, const FileStructure& structure,
                                             std::size_t number) {
  return RoomFinder(source, structure, number).find();
}

MetadataRoom withoutFill(SeekableSource& source, const MetadataRoom& room) {
  uint64 end = room.offset;
  source.seek(room.offset);
  while (source.position() < room.end()) {
    const KLVHeader klv = readKLVHeader(source);
    skipValue(klv, source);
    if (!KLV::isFill(klv.key)) end = source.position();
  }
  return {room.offset, end - room.offset};
}

Bytes readRoom(SeekableSource& source, const MetadataRoom& room) {
  source.seek(room.offset);
  source.require(room.size);
  Bytes bytes(static_cast<std::size_t>(room.size));
  source.read(bytes.data(), bytes.size());
  return bytes;
}

bool haveSameBytes(SeekableSource& source, const MetadataRoom& left, const MetadataRoom& right) {
  return left.size == right.size && DataIO::haveSameBytes(source, left.offset, source, right.offset, left.size);
}

void refuseDirectory(const SeekableSource& source, const KLVHeader& klv, std::size_t partition) {
  if (!KLV::isOfObjectDirectory(klv.key)) return;
  raise<Exceptions::IOError>(
      "at byte offset {}: cannot replace header metadata in '{}': the KLV with key {} in partition {} holds offsets "
      "of sets, but stands outside of header metadata",
      klv.offset, source.name(), klv.key.toString(), partition);
}

}  // namespace Vantor::MXF
