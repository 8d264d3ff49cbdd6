#include "Core/KLV/LocalSet.h"

#include <limits>

#include "Core/DataIO/Memory.h"
#include "Core/KLV/BERLength.h"
#include "Core/KLV/IdentifierText.h"
#include "Core/Platform/Raise.h"

namespace Vantor::KLV {

namespace {

using DataIO::Memory::MemoryDataSource;
using Exceptions::raise;

wstring tagText(uint16 tag) {
  uint8 bytes[sizeof tag];
  DataIO::writeBigEndian<uint16>(bytes, tag);
  return dottedText(bytes, sizeof bytes);
}

void requireTagAndLength(const MemoryDataSource& source, std::size_t size) {
  if (source.remaining() >= size) return;
  raise<Exceptions::ParseError>(
      "at byte offset {}: expected the tag and length of a local set item, {} bytes or more, found {} bytes",
      source.position(), size, source.remaining());
}

void requireValue(const MemoryDataSource& source, uint16 tag, uint64 size) {
  if (source.remaining() >= size) return;
  raise<Exceptions::ParseError>("at byte offset {}: expected {} bytes for the local set item with tag {}, found {}",
                                source.position(), size, tagText(tag), source.remaining());
}

void requireLength(LocalSetCoding coding, uint16 tag, std::size_t size, uint8 lengthOctets) {
  if (coding == LocalSetCoding::kBERLengths) return static_cast<void>(berOctets(size, lengthOctets));
  if (size <= std::numeric_limits<uint16>::max()) return;
  raise<Exceptions::InvalidLength>(
      "expected at most 65535 bytes for the local set item with tag {}, whose length has 2 bytes, found {}",
      tagText(tag), size);
}

}  // namespace

LocalSetCoding localSetCoding(const Key& key) {
  if (isSwappedUUID(key)) return LocalSetCoding::kTwoByteLengths;
  if (!isLocalSet(key)) {
    raise<Exceptions::InvalidFormat>("expected the key of a local set with 2-byte tags, found {}", key.toString());
  }
  return static_cast<LocalSetCoding>(key.octet(Key::kCodingOctet));
}

Templates::vector<LocalSetItem> readLocalSet(LocalSetCoding coding, const uint8* value, std::size_t size,
                                             uint64 origin) {
  const bool hasBERLengths = coding == LocalSetCoding::kBERLengths;
  Templates::vector<LocalSetItem> items;
  MemoryDataSource source(value, size, false, origin);
  while (source.remaining() != 0) {
    requireTagAndLength(source, sizeof(uint16) + (hasBERLengths ? 1 : sizeof(uint16)));
    const auto tag = DataIO::readBigEndian<uint16>(source);
    const BERLength length =
        hasBERLengths ? readBERLength(source) : BERLength{DataIO::readBigEndian<uint16>(source), sizeof(uint16)};
    requireValue(source, tag, length.value);
    const uint8* const itemValue = value + (size - source.remaining());
    items.push_back({tag, itemValue, static_cast<std::size_t>(length.value), length.octets});
    source.skip(length.value);
  }
  return items;
}

void writeLocalSetItem(DataIO::DataSink& sink, LocalSetCoding coding, uint16 tag, const uint8* value, std::size_t size,
                       uint8 lengthOctets) {
  requireLength(coding, tag, size, lengthOctets);
  DataIO::writeBigEndian<uint16>(sink, tag);
  if (coding == LocalSetCoding::kBERLengths) {
    writeBERLength(sink, size, lengthOctets);
  } else {
    DataIO::writeBigEndian<uint16>(sink, static_cast<uint16>(size));
  }
  sink.write(value, size);
}

}  // namespace Vantor::KLV
