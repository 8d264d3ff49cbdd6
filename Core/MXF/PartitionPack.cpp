#include "Core/MXF/PartitionPack.h"

#include <type_traits>

#include "Core/DataIO/Memory.h"
#include "Core/KLV/CollectionHeader.h"
#include "Core/Platform/Raise.h"

namespace Vantor::MXF {

namespace {

void requireItems(const KLV::CollectionHeader& batch, const DataIO::DataSource& source) {
  const uint64 expected = uint64{batch.count} * KLV::Key::kSize;
  if (source.remaining() == expected && (batch.count == 0 || batch.itemSize == KLV::Key::kSize)) return;
  Exceptions::raise<Exceptions::ParseError>(
      "at byte offset {}: expected a partition pack's essence containers, 16 bytes each, found a count of {}, an item "
      "size of {} and {} bytes",
      source.position(), batch.count, batch.itemSize, source.remaining());
}

}  // namespace

PartitionPack PartitionPack::parse(const KLV::Key& key, const uint8* value, std::size_t size, uint64 origin) {
  DataIO::Memory::MemoryDataSource source(value, size, false, origin);
  PartitionPack pack;
  pack.kind = KLV::partitionKind(key);
  pack.status = KLV::partitionStatus(key);
  forEachNumber(
      pack, [&](auto& number) { number = DataIO::readBigEndian<std::remove_reference_t<decltype(number)>>(source); });
  pack.operationalPattern = Types::UniversalLabel(KLV::Key::read(source));
  const auto batch = KLV::CollectionHeader::parse(source);
  requireItems(batch, source);
  pack.essenceContainerSize = batch.itemSize;
  pack.essenceContainers.reserve(batch.count);
  while (source.remaining() != 0) pack.essenceContainers.emplace_back(KLV::Key::read(source));
  return pack;
}

void PartitionPack::render(DataIO::DataSink& sink) const {
  forEachNumber(*this,
                [&](const auto& number) { DataIO::writeBigEndian<std::decay_t<decltype(number)>>(sink, number); });
  sink.write(operationalPattern.rawBuffer(), Types::UniversalLabel::kSize);
  KLV::CollectionHeader{static_cast<uint32>(essenceContainers.size()), essenceContainerSize}.render(sink);
  for (const auto& label : essenceContainers) sink.write(label.rawBuffer(), Types::UniversalLabel::kSize);
}

}  // namespace Vantor::MXF
