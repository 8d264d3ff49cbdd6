#include "Core/KLV/PrimerPack.h"

#include "Core/DataIO/Memory.h"
#include "Core/KLV/CollectionHeader.h"
#include "Core/Platform/Raise.h"

namespace Vantor::KLV {

namespace {

using DataIO::Memory::MemoryDataSource;
using Exceptions::raise;

void requireRows(const CollectionHeader& header, const MemoryDataSource& source) {
  if (header.itemSize != kPrimerEntrySize) {
    raise<Exceptions::ParseError>("at byte offset {}: expected a primer pack's row size of 18 bytes, found {}",
                                  source.position() - sizeof header.itemSize, header.itemSize);
  }
  if (header.size() != source.remaining()) {
    raise<Exceptions::ParseError>("at byte offset {}: expected {} bytes for the {} rows of a primer pack, found {}",
                                  source.position(), header.size(), header.count, source.remaining());
  }
}

}  // namespace

Templates::vector<PrimerEntry> readPrimerPack(const uint8* value, std::size_t size, uint64 origin) {
  MemoryDataSource source(value, size, false, origin);
  const auto header = CollectionHeader::parse(source);
  requireRows(header, source);
  Templates::vector<PrimerEntry> entries;
  entries.reserve(header.count);
  while (source.remaining() != 0) {
    const auto tag = DataIO::readBigEndian<uint16>(source);
    entries.push_back({tag, Key::read(source)});
  }
  return entries;
}

void writePrimerPack(DataIO::DataSink& sink, const Templates::vector<PrimerEntry>& entries) {
  CollectionHeader{static_cast<uint32>(entries.size()), kPrimerEntrySize}.render(sink);
  for (const PrimerEntry& entry : entries) {
    DataIO::writeBigEndian<uint16>(sink, entry.tag);
    sink.write(entry.label.rawBuffer(), Key::kSize);
  }
}

}  // namespace Vantor::KLV
