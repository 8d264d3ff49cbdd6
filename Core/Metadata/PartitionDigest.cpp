#include "Core/Metadata/PartitionDigest.h"

#include "Core/DataIO/Crc64.h"

namespace Vantor {

namespace {

void write(const PartitionMetadata::Entry& entry, DataIO::DataSink& sink, PartitionDictionary& tags) {
  if (const auto* set = std::get_if<auto_ptr<MetadataSet>>(&entry)) return (*set)->serialize(sink, tags);
  std::get<auto_ptr<DarkMetadataSet>>(entry)->serialize(sink);
}

}  // namespace

uint64 digestOf(const PartitionMetadata& partition) {
  // Writing sets may enter tags into the primer, and the partition is only read.
  PartitionDictionary tags = partition.partitionDictionary();
  DataIO::Crc64 sink;
  for (const auto& entry : partition.entries()) write(entry, sink, tags);
  KLV::writePrimerPack(sink, tags.primerEntries());
  return sink.value();
}

}  // namespace Vantor
