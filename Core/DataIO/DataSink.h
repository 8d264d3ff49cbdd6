#pragma once

#include <cstddef>

#include "Core/DataIO/BigEndian.h"
#include "Core/Platform/Types.h"

namespace Vantor::DataIO {

/// Where bytes are written from front to back. One thread at a time may use a sink.
class DataSink {
 public:
  virtual ~DataSink() = default;

  /// Appends `size` bytes, all of them; `from` may be null when `size` is 0.
  /// @throws what suits the sink's medium; how many bytes were written is unspecified then.
  virtual void write(const uint8* from, std::size_t size) = 0;
  /// How many bytes were written so far.
  virtual uint64 position() const = 0;
};

/// Appends one integer as `sizeof(T)` big-endian bytes; name `T` so that the width stands at the call.
template <class T>
void writeBigEndian(DataSink& sink, T number) {
  uint8 bytes[sizeof(T)];
  writeBigEndian<T>(bytes, number);
  sink.write(bytes, sizeof bytes);
}

}  // namespace Vantor::DataIO
