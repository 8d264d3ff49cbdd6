#include "Core/MXF/MetadataRoom.h"

#include <algorithm>
#include <string>

#include "Core/KLV/Keys.h"
#include "Core/MXF/HeaderMetadataKeys.h"
#include "Core/MXF/KLVHeader.h"
#include "Core/Platform/Containers.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Strings.h"

namespace Vantor::MXF {

namespace {

using DataIO::File::FileDataSource;

constexpr const char* kSourceName = "Core/MXF/MetadataRoom";
constexpr uint64 kPieceSize = uint64{1} << 16;

/// The KLVs of one manufacturer's files that hold offsets in the file: of all sets, and of that list.
constexpr KLV::Key kObjectDirectory({0x96, 0x13, 0xb3, 0x8a, 0x87, 0x34, 0x87, 0x46,  //
                                     0xf1, 0x02, 0x96, 0xf0, 0x56, 0xe0, 0x4d, 0x2a});
constexpr KLV::Key kRootOfDirectory({0x80, 0x53, 0x08, 0x00, 0x36, 0x21, 0x08, 0x04,  //
                                     0xb3, 0xb3, 0x98, 0xa5, 0x1c, 0x90, 0x11, 0xd4});

std::string nameOf(std::size_t partition) { return "partition " + std::to_string(partition); }

class RoomFinder {
 public:
  RoomFinder(FileDataSource& source, const FileStructure& structure, std::size_t number)
      : source_(source), partition_(structure.partitions[number]), number_(number) {
    const bool isLast = number + 1 == structure.partitions.size();
    partitionEnd_ = isLast ? structure.end : structure.partitions[number + 1].offset;
  }

  std::optional<MetadataRoom> find() {
    source_.seek(partition_.packEnd);
    skipFill(source_);
    const bool hasPrimer = source_.position() < partitionEnd_ && KLV::isPrimerPack(peekKey(source_));
    if (partition_.pack.headerByteCount == 0 && !hasPrimer) {
      skipToEssence();
      return std::nullopt;
    }
    if (!hasPrimer) throwParseError("expected the primer pack of " + name() + ", found another key", __LINE__);
    const MetadataRoom room{source_.position(), partition_.pack.headerByteCount};
    requireWholeKLVs(room);
    requireNoSetsBehind();
    skipToEssence();
    return room;
  }

 private:
  void requireWholeKLVs(const MetadataRoom& room) {
    if (room.size > partitionEnd_ - room.offset) {
      throwParseError(name() + " counts " + std::to_string(room.size) + " bytes of header metadata, but ends at " +
                          std::to_string(partitionEnd_),
                      __LINE__);
    }
    while (source_.position() < room.end()) {
      if (endsHeaderMetadata(peekKey(source_)) || !skipKLV()) throwWrongCount(room, __LINE__);
    }
    if (source_.position() != room.end()) throwWrongCount(room, __LINE__);
  }

  /// Up to the index tables and the essence, to neither of which a set belongs.
  void requireNoSetsBehind() {
    while (source_.position() < partitionEnd_ && !endsHeaderMetadata(peekKey(source_))) {
      if (KLV::isLocalSet(peekKey(source_))) {
        throwParseError("a set stands behind the header metadata of " + name() + ", as its partition pack counts them",
                        __LINE__);
      }
      skipKLV();
    }
  }

  /// What is among the essence, which may be long, is looked for by refuseUnlisted().
  void skipToEssence() {
    while (source_.position() < partitionEnd_) {
      const KLV::Key key = peekKey(source_);
      if (endsHeaderMetadata(key) && !KLV::isIndexTableSegment(key)) return;
      skipKLV();
    }
  }

  /// Returns whether the KLV is whole.
  bool skipKLV() {
    const KLVHeader klv = readKLVHeader(source_);
    refuseDirectory(source_, klv, number_);
    skipValue(klv, source_);
    return valueFits(klv, source_);
  }

  std::string name() const { return nameOf(number_); }

  [[noreturn]] void throwWrongCount(const MetadataRoom& room, int line) const {
    throwParseError(name() + " counts " + std::to_string(room.size) + " bytes of header metadata from byte offset " +
                        std::to_string(room.offset) + " on, which do not end with a KLV of them",
                    line);
  }

  [[noreturn]] void throwParseError(const std::string& message, int line) const {
    throw Exceptions::ParseError(DataIO::atOffset(source_.position()) + message, kSourceName, line);
  }

  FileDataSource& source_;
  const PartitionInfo& partition_;
  std::size_t number_;
  uint64 partitionEnd_ = 0;
};

}  // namespace

std::optional<MetadataRoom> findMetadataRoom(FileDataSource& source, const FileStructure& structure,
                                             std::size_t number) {
  return RoomFinder(source, structure, number).find();
}

MetadataRoom withoutFill(FileDataSource& source, const MetadataRoom& room) {
  uint64 end = room.offset;
  source.seek(room.offset);
  while (source.position() < room.end()) {
    const KLVHeader klv = readKLVHeader(source);
    skipValue(klv, source);
    if (!KLV::isFill(klv.key)) end = source.position();
  }
  return {room.offset, end - room.offset};
}

bool haveSameBytes(FileDataSource& source, const MetadataRoom& left, const MetadataRoom& right) {
  if (left.size != right.size) return false;
  Bytes one(static_cast<std::size_t>(std::min(left.size, kPieceSize))), other(one.size());
  for (uint64 done = 0; done < left.size;) {
    const auto piece = static_cast<std::size_t>(std::min<uint64>(left.size - done, one.size()));
    source.seek(left.offset + done);
    source.read(one.data(), piece);
    source.seek(right.offset + done);
    source.read(other.data(), piece);
    if (!std::equal(one.begin(), one.begin() + static_cast<std::ptrdiff_t>(piece), other.begin())) return false;
    done += piece;
  }
  return true;
}

void refuseDirectory(const FileDataSource& source, const KLVHeader& klv, std::size_t partition) {
  if (klv.key != kObjectDirectory && klv.key != kRootOfDirectory) return;
  throw DataIO::File::ioError(DataIO::atOffset(klv.offset) + "cannot replace header metadata in", source.path(),
                              "the KLV with key " + Utils::wstringToString(klv.key.toString()) + " in " +
                                  nameOf(partition) + " tells where sets stand in the file, which would be wrong then",
                              kSourceName, __LINE__);
}

}  // namespace Vantor::MXF
