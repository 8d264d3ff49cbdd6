#pragma once

#include <cstddef>

#include "Core/DataIO/BigEndian.h"
#include "Core/Platform/Types.h"

namespace Vantor::DataIO {

/// What remaining() returns where only reading finds the end.
constexpr uint64 kUnknownSize = ~uint64{0};

/// Bytes that are read from front to back. One thread at a time may use a source.
class DataSource {
 public:
  virtual ~DataSource() = default;

  /// The offset of the next byte, as messages give it.
  virtual uint64 position() const = 0;
  /// How many bytes are left to read, or kUnknownSize.
  virtual uint64 remaining() const = 0;
  /// Copies the next `size` bytes to `to` and moves past them, or throws and, where the end is known, does not move.
  /// @throws Exceptions::ParseError when fewer bytes are left, Exceptions::IOError when the system cannot deliver them.
  virtual void read(uint8* to, std::size_t size) = 0;
  /// Copies the next `size` bytes, or all that are left, and moves past them.
  /// @return how many; fewer than `size` only at the end.
  virtual std::size_t readUpTo(uint8* to, std::size_t size);
  /// Moves past `size` bytes, without reading them where the medium allows that; throws as read().
  virtual void skip(uint64 size) = 0;

  /// Asks for `size` more bytes before anything is allocated for them.
  /// @throws Exceptions::ParseError naming the position, `size` and what is left, when fewer bytes are left.
  void require(uint64 size) const;
};

/// Reads the next `sizeof(T)` bytes as one big-endian integer.
template <class T>
T readBigEndian(DataSource& source) {
  uint8 bytes[sizeof(T)];
  source.read(bytes, sizeof bytes);
  return readBigEndian<T>(bytes);
}

}  // namespace Vantor::DataIO
