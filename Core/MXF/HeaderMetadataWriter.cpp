#include "Core/MXF/HeaderMetadataWriter.h"

#include "Core/DataIO/Memory.h"
#include "Core/KLV/Keys.h"
#include "Core/KLV/LocalSet.h"
#include "Core/KLV/PrimerPack.h"
#include "Core/MXF/KLVHeader.h"
#include "Core/MXF/PartitionPack.h"
#include "Core/MXF/PrefaceLabels.h"
#include "Core/Metadata/EntryView.h"
#include "Core/Platform/Raise.h"

namespace Vantor::MXF {

using DataIO::Memory::MemoryDataSink;

namespace {

using Exceptions::InvalidFormat;
using Exceptions::raise;

constexpr uint8 kLengthOctets = 4;  // customary for packs
constexpr uint16 kMajorVersion = 1;
constexpr uint16 kMinorVersion = 3;  // ST 377-1
constexpr uint32 kKAGSize = 1;

void writeKLV(DataIO::DataSink& sink, const KLV::Key& key, const MemoryDataSink& value,
              uint8 lengthOctets = kLengthOctets) {
  writeKLVHeader(sink, key, value.serializedSize(), lengthOctets);
  sink.write(value.rawBuffer(), value.serializedSize());
}

void requireSetKey(const KLV::Key& key) {
  if (KLV::canBeSet(key)) return;
  raise<InvalidFormat>("a set cannot be written with key {}, which is of another part of MXF", key.toString());
}

/// A KLV that readers take for a known set has to read as one.
void requireItems(const EntryView& entry, const MetaMetadata::Dictionary& dictionary) {
  const auto* definition = entry.isDark() && KLV::isLocalSet(*entry.key) ? dictionary.findSet(*entry.key) : nullptr;
  if (definition == nullptr) return;
  try {
    KLV::readLocalSet(KLV::localSetCoding(*entry.key), reinterpret_cast<const uint8*>(entry.octets.data()),
                      entry.octets.size());
  } catch (const Exceptions::ParseError& error) {
    raise<InvalidFormat>("a dark set has the key of set {}, but its value is none: {}", definition->symbol(),
                         error.message());
  }
}

void requireReadableSets(const PartitionMetadata& partition) {
  for (const auto& entry : partition.entries()) {
    const EntryView view(entry);
    requireSetKey(*view.key);
    requireItems(view, *partition.partitionDictionary().dictionary());
  }
}

void writeInFileOrder(PartitionMetadata& partition, DataIO::DataSink& sink) {
  for (const auto& entry : partition.entries()) {
    if (const auto* set = std::get_if<auto_ptr<MetadataSet>>(&entry)) {
      (*set)->serialize(sink, partition.partitionDictionary());
    } else {
      std::get<auto_ptr<DarkMetadataSet>>(entry)->serialize(sink);
    }
  }
}

void writeInSerializationOrder(PartitionMetadata& partition, DataIO::DataSink& sink) {
  std::vector<const MetadataSet*> order;
  partition.calculateSerializationOrder(order, true, false);
  for (const auto* set : order) set->serialize(sink, partition.partitionDictionary());
  for (auto at = partition.darkBegin(); at != partition.darkEnd(); ++at) (*at)->serialize(sink);
}

PartitionPack headerPartition(const PartitionMetadata& partition, uint64 headerByteCount) {
  const MetadataSet* const preface = partition.preface();
  if (preface == nullptr) raise<InvalidFormat>("the header metadata has no Preface");
  const auto operationalPattern = operationalPatternOf(*preface);
  if (!operationalPattern) raise<InvalidFormat>("the Preface has no operational pattern");
  PartitionPack pack;
  pack.kind = KLV::PartitionKind::kHeader;
  pack.status = KLV::PartitionStatus::kClosedComplete;
  pack.majorVersion = kMajorVersion;
  pack.minorVersion = kMinorVersion;
  pack.kagSize = kKAGSize;
  pack.headerByteCount = headerByteCount;
  pack.operationalPattern = *operationalPattern;
  pack.essenceContainers = essenceContainersOf(*preface);
  return pack;
}

/// One partition, at offset 0 and without essence; the pack ends with the count of all its own octets.
void writeRandomIndexPack(DataIO::DataSink& sink) {
  constexpr uint32 kValueSize = 4 + 8 + 4;
  MemoryDataSink value;
  DataIO::writeBigEndian<uint32>(value, 0);
  DataIO::writeBigEndian<uint64>(value, 0);
  DataIO::writeBigEndian<uint32>(value, KLV::Key::kSize + kLengthOctets + kValueSize);
  writeKLV(sink, KLV::randomIndexPackKey(), value);
}

}  // namespace

void writeHeaderMetadata(PartitionMetadata& partition, SetOrder order, DataIO::DataSink& sink) {
  requireReadableSets(partition);
  // The sets go first into memory: writing them is what completes the primer that stands before them.
  MemoryDataSink sets;
  if (order == SetOrder::kFile) {
    writeInFileOrder(partition, sets);
  } else {
    writeInSerializationOrder(partition, sets);
  }
  MemoryDataSink primer;
  const auto& tags = partition.partitionDictionary();
  KLV::writePrimerPack(primer, tags.primerEntries());
  writeKLV(sink, tags.primerKey(), primer, tags.primerLengthOctets());
  sink.write(sets.rawBuffer(), sets.serializedSize());
}

void writeHeaderOnlyFile(PartitionMetadata& partition, SetOrder order, DataIO::DataSink& sink) {
  MemoryDataSink metadata;
  writeHeaderMetadata(partition, order, metadata);
  const PartitionPack pack = headerPartition(partition, metadata.serializedSize());
  MemoryDataSink value;
  pack.render(value);
  writeKLV(sink, KLV::partitionPackKey(pack.kind, pack.status), value);
  sink.write(metadata.rawBuffer(), metadata.serializedSize());
  writeRandomIndexPack(sink);
}

}  // namespace Vantor::MXF
