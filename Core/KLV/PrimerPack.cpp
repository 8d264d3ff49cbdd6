#include "Core/KLV/PrimerPack.h"

#include <limits>
#include <string>

#include "Core/DataIO/Memory.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor::KLV {

namespace {

using DataIO::Memory::MemoryDataSource;

constexpr const char* kSourceName = "Core/KLV/PrimerPack";

void requireRowSize(uint32 rowSize, uint64 offset) {
  if (rowSize == kPrimerEntrySize) return;
  throw Exceptions::ParseError(
      DataIO::atOffset(offset) + "expected a primer pack's row size of 18 bytes, found " + std::to_string(rowSize),
      kSourceName, __LINE__);
}

void requireRows(uint32 count, const MemoryDataSource& source) {
  const uint64 expected = uint64{count} * kPrimerEntrySize;
  if (expected == source.remaining()) return;
  throw Exceptions::ParseError(DataIO::atOffset(source.position()) + "expected " + std::to_string(expected) +
                                   " bytes for the " + std::to_string(count) + " rows of a primer pack, found " +
                                   std::to_string(source.remaining()),
                               kSourceName, __LINE__);
}

PrimerEntry readEntry(MemoryDataSource& source) {
  PrimerEntry entry;
  entry.tag = DataIO::readBigEndian<uint16>(source);
  uint8 label[Key::kSize];
  source.read(label, sizeof label);
  entry.label = Key(label);
  return entry;
}

}  // namespace

Templates::vector<PrimerEntry> readPrimerPack(const uint8* value, std::size_t size, uint64 origin) {
  MemoryDataSource source(value, size, false, origin);
  const auto count = DataIO::readBigEndian<uint32>(source);
  const uint64 rowSizeOffset = source.position();
  requireRowSize(DataIO::readBigEndian<uint32>(source), rowSizeOffset);
  requireRows(count, source);
  Templates::vector<PrimerEntry> entries;
  entries.reserve(count);
  while (source.remaining() != 0) entries.push_back(readEntry(source));
  return entries;
}

void writePrimerPack(DataIO::DataSink& sink, const Templates::vector<PrimerEntry>& entries) {
  if (entries.size() > std::numeric_limits<uint32>::max()) {
    throw Exceptions::InvalidLength(
        "expected at most 4294967295 rows of a primer pack, found " + std::to_string(entries.size()), kSourceName,
        __LINE__);
  }
  DataIO::writeBigEndian<uint32>(sink, static_cast<uint32>(entries.size()));
  DataIO::writeBigEndian<uint32>(sink, kPrimerEntrySize);
  for (const PrimerEntry& entry : entries) {
    DataIO::writeBigEndian<uint16>(sink, entry.tag);
    sink.write(entry.label.rawBuffer(), Key::kSize);
  }
}

}  // namespace Vantor::KLV
