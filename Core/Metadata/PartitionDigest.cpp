#include "Core/Metadata/PartitionDigest.h"

#include "Core/DataIO/Crc64.h"
#include "Core/DataIO/DataSink.h"

namespace Vantor {

namespace {

/// Checks what is written to it and keeps nothing.
class Crc64Sink : public DataIO::DataSink {
 public:
  void write(const uint8* from, std::size_t size) override {
    check_.add(from, size);
    size_ += size;
  }
  uint64 position() const override { return size_; }
  uint64 value() const { return check_.value(); }

 private:
  DataIO::Crc64 check_;
  uint64 size_ = 0;
};

void write(const PartitionMetadata::Entry& entry, DataIO::DataSink& sink, PartitionDictionary& tags) {
  if (const auto* set = std::get_if<auto_ptr<MetadataSet>>(&entry)) return (*set)->serialize(sink, tags);
  std::get<auto_ptr<DarkMetadataSet>>(entry)->serialize(sink);
}

}  // namespace

uint64 digestOf(const PartitionMetadata& partition) {
  // Writing sets may enter tags into the primer, and the partition is only read.
  PartitionDictionary tags = partition.partitionDictionary();
  Crc64Sink sink;
  for (const auto& entry : partition.entries()) write(entry, sink, tags);
  KLV::writePrimerPack(sink, tags.primerEntries());
  return sink.value();
}

}  // namespace Vantor
