#include "Core/MXF/HeaderMetadataReader.h"

#include <string>
#include <utility>

#include "Core/DataIO/OneState.h"
#include "Core/MXF/MetadataReader.h"
#include "Core/Platform/Limits.h"

namespace Vantor::MXF {

using DataIO::SeekableSource;

namespace {

std::string messageOf(const Exceptions::ParseError& cause, std::size_t wholeSets) {
  std::string text = cause.message() + "; ";
  if (wholeSets == 0) return text + "no whole set stands before it";
  return text + std::to_string(wholeSets) + (wholeSets == 1 ? " whole set stands" : " whole sets stand") + " before it";
}

}  // namespace

DamagedMetadata::DamagedMetadata(const Exceptions::ParseError& cause, uint64 offset, std::size_t wholeSets)
    : ParseError(messageOf(cause, wholeSets), cause.file(), cause.line()), offset_(offset), wholeSets_(wholeSets) {
  setDetails("{}; {} whole sets stand before it", {cause.message(), std::to_string(wholeSets)});
}

std::unique_ptr<PartitionMetadata> readHeaderMetadata(SeekableSource& source,
                                                      SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                                      const PartitionInfo& partition, const Limits& limits) {
  return withinMemory(limits, [&] {
    source.seek(partition.packEnd);
    MetadataReader reader(source, std::move(dictionary), limits);
    auto metadata = reader.read(partition);
    source.seek(reader.end());
    return metadata;
  });
}

std::unique_ptr<PartitionMetadata> readHeaderMetadata(SeekableSource& source,
                                                      SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                                      const PartitionChoice& choice, const Limits& limits) {
  return readHeaderMetadata(source, std::move(dictionary), findPartition(source, choice), limits);
}

std::unique_ptr<PartitionMetadata> readHeaderMetadata(DataIO::DataSource& source,
                                                      SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                                      const Limits& limits) {
  return withinMemory(limits, [&] {
    const PartitionInfo header = readHeaderPartition(source);
    return MetadataReader(source, std::move(dictionary), limits).read(header);
  });
}

std::unique_ptr<PartitionMetadata> readHeaderMetadata(const Path& path,
                                                      SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                                      const PartitionChoice& choice, const Limits& limits) {
  return DataIO::File::readInOneState(
      path, [&](SeekableSource& source) { return readHeaderMetadata(source, dictionary, choice, limits); });
}

}  // namespace Vantor::MXF
