#pragma once

#include <cstddef>
#include <utility>

#include "Core/DataIO/DataSource.h"
#include "Core/Platform/Containers.h"
#include "Core/Platform/Types.h"

namespace Vantor::KLV {

/// The value of a KLV triplet: bytes that it owns.
class Value {
 public:
  Value() = default;
  explicit Value(Bytes bytes) : bytes_(std::move(bytes)) {}
  /// Reads the next `size` bytes of the source.
  /// @throws Exceptions::ParseError with the offset when fewer are left; nothing is allocated or read then. From a
  /// source of unknown size, memory is allocated piece by piece as the bytes arrive.
  Value(DataIO::DataSource& source, uint64 size);

  /// Valid until the value is assigned to; may be null when the size is 0.
  const uint8* rawBuffer() const { return bytes_.data(); }
  std::size_t serializedSize() const { return bytes_.size(); }
  const Bytes& bytes() const { return bytes_; }

  friend bool operator==(const Value& left, const Value& right) { return left.bytes_ == right.bytes_; }
  friend bool operator!=(const Value& left, const Value& right) { return left.bytes_ != right.bytes_; }

 private:
  Bytes bytes_;
};

}  // namespace Vantor::KLV
