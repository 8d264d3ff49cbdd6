#pragma once

#include <memory>
#include <string>

#include "Core/DataIO/Memory.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Exceptions.h"
#include "JSON/Document.h"

/// Shared by the tests of JSON.
namespace Vantor::JSON {

inline std::string textOf(const DataIO::Memory::MemoryDataSink& sink) {
  return {reinterpret_cast<const char*>(sink.rawBuffer()), sink.serializedSize()};
}

inline std::string exported(const PartitionMetadata& metadata) {
  DataIO::Memory::MemoryDataSink sink;
  writeDocument(metadata, "header", sink);
  return textOf(sink);
}

/// @param like  whose dictionary the sets are read with.
inline std::unique_ptr<PartitionMetadata> imported(const std::string& text, const PartitionMetadata& like) {
  auto metadata = std::make_unique<PartitionMetadata>(like.partitionDictionary().dictionary());
  Document::fromText(text).import(*metadata);
  return metadata;
}

/// The octets of primer pack and sets, as an import writes them into a file.
inline std::string octetsOf(PartitionMetadata& metadata) {
  DataIO::Memory::MemoryDataSink sink;
  MXF::writeHeaderMetadata(metadata, MXF::SetOrder::kSerialization, sink);
  return textOf(sink);
}

}  // namespace Vantor::JSON
