#include "Core/MXF/PartitionPack.h"

#include <string>

#include "Core/DataIO/Memory.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor::MXF {

namespace {

using DataIO::readBigEndian;
using DataIO::Memory::MemoryDataSource;

Types::UniversalLabel readLabel(MemoryDataSource& source) {
  uint8 bytes[KLV::Key::kSize];
  source.read(bytes, sizeof bytes);
  return Types::UniversalLabel(bytes);
}

void requireItems(uint32 count, uint32 itemSize, const MemoryDataSource& source) {
  const uint64 expected = uint64{count} * KLV::Key::kSize;
  if (source.remaining() == expected && (count == 0 || itemSize == KLV::Key::kSize)) return;
  throw Exceptions::ParseError(DataIO::atOffset(source.position()) +
                                   "expected a partition pack's essence containers, 16 bytes each, found a count of " +
                                   std::to_string(count) + ", an item size of " + std::to_string(itemSize) + " and " +
                                   std::to_string(source.remaining()) + " bytes",
                               "Core/MXF/PartitionPack", __LINE__);
}

std::vector<Types::UniversalLabel> readEssenceContainers(MemoryDataSource& source) {
  const auto count = readBigEndian<uint32>(source);
  const auto itemSize = readBigEndian<uint32>(source);
  requireItems(count, itemSize, source);
  std::vector<Types::UniversalLabel> labels;
  labels.reserve(count);
  while (source.remaining() != 0) labels.push_back(readLabel(source));
  return labels;
}

}  // namespace

PartitionPack readPartitionPack(const KLV::Key& key, const uint8* value, std::size_t size, uint64 origin) {
  MemoryDataSource source(value, size, false, origin);
  PartitionPack pack;
  pack.kind = KLV::partitionKind(key);
  pack.status = KLV::partitionStatus(key);
  pack.majorVersion = readBigEndian<uint16>(source);
  pack.minorVersion = readBigEndian<uint16>(source);
  pack.kagSize = readBigEndian<uint32>(source);
  pack.thisPartition = readBigEndian<uint64>(source);
  pack.previousPartition = readBigEndian<uint64>(source);
  pack.footerPartition = readBigEndian<uint64>(source);
  pack.headerByteCount = readBigEndian<uint64>(source);
  pack.indexByteCount = readBigEndian<uint64>(source);
  pack.indexSID = readBigEndian<uint32>(source);
  pack.bodyOffset = readBigEndian<uint64>(source);
  pack.bodySID = readBigEndian<uint32>(source);
  pack.operationalPattern = readLabel(source);
  pack.essenceContainers = readEssenceContainers(source);
  return pack;
}

}  // namespace Vantor::MXF
