#include "Core/MXF/IndexTable.h"

#include "Core/KLV/Keys.h"
#include "Core/MXF/KLVHeader.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor::MXF {

namespace {

using DataIO::SeekableSource;

// Local tags of ST 377-1.
constexpr uint16 kIndexSID = 0x3f06;
constexpr uint16 kIndexEditRate = 0x3f0b;

class IndexTableReader {
 public:
  IndexTableReader(SeekableSource& source, const FileStructure& structure, std::size_t number)
      : source_(source), partition_(structure.partitions[number]) {
    const bool isLast = number + 1 == structure.partitions.size();
    end_ = isLast ? structure.end : structure.partitions[number + 1].offset;
  }

  std::optional<IndexTableSegment> read() {
    source_.seek(partition_.packEnd);
    skipFill();
    if (partition_.pack.headerByteCount > end_ - source_.position()) return std::nullopt;
    source_.skip(partition_.pack.headerByteCount);
    skipFill();
    if (!isInside() || !KLV::isIndexTableSegment(peekKey(source_))) return std::nullopt;
    const KLVHeader klv = readKLVHeader(source_);
    return valueFits(klv, source_) ? readItems(klv.valueOffset + klv.length.value) : std::nullopt;
  }

 private:
  bool isInside() const { return source_.position() < end_; }

  void skipFill() {
    while (isInside() && KLV::isFill(peekKey(source_))) skipValue(readKLVHeader(source_), source_);
  }

  std::optional<IndexTableSegment> readItems(uint64 end) {
    IndexTableSegment segment;
    bool hasRate = false;
    while (source_.position() + 4 <= end) {
      const auto tag = DataIO::readBigEndian<uint16>(source_), size = DataIO::readBigEndian<uint16>(source_);
      const uint64 next = source_.position() + size;
      if (next > end) return std::nullopt;
      if (tag == kIndexSID && size == 4) segment.indexSID = DataIO::readBigEndian<uint32>(source_);
      if (tag == kIndexEditRate && size == 8) {
        segment.editRate = readRate();
        hasRate = true;
      }
      source_.seek(next);
    }
    return hasRate ? std::optional(segment) : std::nullopt;
  }

  Types::Rational readRate() {
    const auto numerator = static_cast<int32>(DataIO::readBigEndian<uint32>(source_));
    return {numerator, static_cast<int32>(DataIO::readBigEndian<uint32>(source_))};
  }

  SeekableSource& source_;
  const PartitionInfo& partition_;
  uint64 end_ = 0;
};

}  // namespace

std::optional<IndexTableSegment> readIndexTable(SeekableSource& source, const FileStructure& structure,
                                                std::size_t number) {
  const auto& partition = structure.partitions[number];
  if (partition.damaged || partition.pack.indexByteCount == 0 || partition.packEnd > structure.end) return std::nullopt;
  try {
    return IndexTableReader(source, structure, number).read();
  } catch (const Exceptions::ParseError&) {
    return std::nullopt;
  }
}

}  // namespace Vantor::MXF
