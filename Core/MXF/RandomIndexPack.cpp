#include "Core/MXF/RandomIndexPack.h"

#include <optional>

#include "Core/KLV/Keys.h"
#include "Core/MXF/KLVHeader.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor::MXF {

namespace {

using DataIO::readBigEndian;
using DataIO::File::FileDataSource;

constexpr uint64 kEntrySize = 12;         // a 32-bit BodySID and a 64-bit offset
constexpr uint64 kOverallLengthSize = 4;  // of the whole pack, key included; the last bytes of the file

std::optional<KLVHeader> findPack(FileDataSource& source) {
  if (source.size() < kOverallLengthSize) return std::nullopt;
  source.seek(source.size() - kOverallLengthSize);
  const auto packSize = readBigEndian<uint32>(source);
  if (packSize > source.size()) return std::nullopt;
  source.seek(source.size() - packSize);
  if (!KLV::isRandomIndexPack(peekKey(source))) return std::nullopt;
  return readKLVHeader(source);
}

bool fillsItsPlace(const KLVHeader& pack, const FileDataSource& source) {
  return pack.length.value == source.size() - pack.valueOffset && pack.length.value % kEntrySize == kOverallLengthSize;
}

/// Entry by entry, so that a length that is a lie allocates nothing.
std::vector<uint64> readEntries(const KLVHeader& pack, FileDataSource& source, uint64 runIn) {
  std::vector<uint64> offsets;
  while (source.remaining() > kOverallLengthSize) {
    source.skip(sizeof(uint32));
    const auto offset = readBigEndian<uint64>(source);
    const bool inFile = runIn <= pack.offset && offset < pack.offset - runIn;
    if (!inFile || (!offsets.empty() && runIn + offset <= offsets.back())) return {};
    offsets.push_back(runIn + offset);
  }
  return offsets;
}

}  // namespace

std::vector<uint64> readRandomIndexPack(FileDataSource& source, uint64 runIn) {
  try {
    const auto pack = findPack(source);
    if (pack && fillsItsPlace(*pack, source)) return readEntries(*pack, source, runIn);
  } catch (const Exceptions::ParseError&) {
    // What looks like a pack and cannot be read is as good as none: there are other ways to the partitions.
  }
  return {};
}

}  // namespace Vantor::MXF
