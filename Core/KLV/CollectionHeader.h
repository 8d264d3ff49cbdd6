#pragma once

#include <cstddef>

#include "Core/DataIO/DataSink.h"
#include "Core/DataIO/DataSource.h"
#include "Core/Platform/Types.h"

namespace Vantor::KLV {

/// What an array or a batch starts with: the number of its items and the size of each, 32 bits big-endian each
/// (ST 377-1).
struct CollectionHeader {
  static constexpr std::size_t kSize = 8;

  uint32 count = 0;
  uint32 itemSize = 0;  ///< in bytes

  /// The size of all items, in bytes.
  uint64 size() const { return uint64{count} * itemSize; }

  static CollectionHeader parse(const uint8* bytes) {
    return {DataIO::readBigEndian<uint32>(bytes), DataIO::readBigEndian<uint32>(bytes + sizeof(uint32))};
  }
  void render(uint8* to) const {
    DataIO::writeBigEndian<uint32>(to, count);
    DataIO::writeBigEndian<uint32>(to + sizeof(uint32), itemSize);
  }

  /// The next bytes of a source.
  static CollectionHeader parse(DataIO::DataSource& source) {
    uint8 bytes[kSize];
    source.read(bytes, sizeof bytes);
    return parse(bytes);
  }
  void render(DataIO::DataSink& sink) const {
    uint8 bytes[kSize];
    render(bytes);
    sink.write(bytes, sizeof bytes);
  }
};

}  // namespace Vantor::KLV
