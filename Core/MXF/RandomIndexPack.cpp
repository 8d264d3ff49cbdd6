#include "Core/MXF/RandomIndexPack.h"

#include "Core/KLV/Keys.h"
#include "Core/Platform/Raise.h"

namespace Vantor::MXF {

namespace {

using DataIO::readBigEndian;
using DataIO::SeekableSource;
using Exceptions::ParseError;
using Exceptions::raise;

constexpr uint64 kEntrySize = 12;         // a 32-bit BodySID and a 64-bit offset
constexpr uint64 kOverallLengthSize = 4;  // of the whole pack, key included; the last bytes of the file

bool hasWholeEntries(const KLVHeader& pack) { return pack.length.value % kEntrySize == kOverallLengthSize; }

/// The pack at the end, at whose value the source then stands; none also where something else, or a damaged pack,
/// stands there.
std::optional<KLVHeader> findSoundPack(SeekableSource& source) {
  if (source.size() < kOverallLengthSize) return std::nullopt;
  source.seek(source.size() - kOverallLengthSize);
  const auto packSize = readBigEndian<uint32>(source);
  if (packSize > source.size()) return std::nullopt;
  source.seek(source.size() - packSize);
  try {
    const KLVHeader pack = readKLVHeader(source);
    const bool endsFile = pack.length.value == source.remaining();
    if (KLV::isRandomIndexPack(pack.key) && endsFile && hasWholeEntries(pack)) return pack;
  } catch (const ParseError&) {
    // A pack that cannot be read is as good as none: there are other ways to the partitions.
  }
  return std::nullopt;
}

}  // namespace

std::vector<uint64> readRandomIndexPack(SeekableSource& source, uint64 runIn) {
  const auto pack = findSoundPack(source);
  if (!pack || pack->offset < runIn) return {};
  std::vector<uint64> offsets;
  while (source.remaining() > kOverallLengthSize) {
    source.skip(sizeof(uint32));
    const auto offset = readBigEndian<uint64>(source);
    if (offset >= pack->offset - runIn || (!offsets.empty() && runIn + offset <= offsets.back())) return {};
    offsets.push_back(runIn + offset);
  }
  return offsets;
}

std::optional<KLVHeader> findRandomIndexPack(SeekableSource& source, uint64 lastPackEnd) {
  if (auto pack = findSoundPack(source)) return pack;
  std::optional<KLVHeader> pack;
  source.seek(lastPackEnd);
  while (source.remaining() != 0 && peekKey(source) != KLV::Key()) {
    const KLVHeader klv = readKLVHeader(source);
    if (!valueFits(klv, source)) {
      raise<ParseError>("at byte offset {}: expected a KLV, found one that is cut off", klv.offset);
    }
    if (KLV::isPartitionPack(klv.key)) {
      raise<ParseError>("at byte offset {}: found a partition pack that none names", klv.offset);
    }
    if (KLV::isRandomIndexPack(klv.key)) {
      if (pack) raise<ParseError>("at byte offset {}: found a second random index pack", klv.offset);
      if (!hasWholeEntries(klv)) {
        raise<ParseError>("at byte offset {}: expected a random index pack, found one of {} bytes", klv.offset,
                          klv.length.value);
      }
      pack = klv;
    }
    skipValue(klv, source);
  }
  return pack;
}

void readRandomIndexEntries(SeekableSource& source, const KLVHeader& pack,
                            const std::function<void(uint32 bodySID, uint64 offset)>& take) {
  source.seek(pack.valueOffset);
  for (uint64 left = pack.length.value / kEntrySize; left != 0; --left) {
    const auto bodySID = readBigEndian<uint32>(source);
    take(bodySID, readBigEndian<uint64>(source));
  }
}

}  // namespace Vantor::MXF
