#pragma once

#include <utility>

#include "Core/Platform/Containers.h"
#include "Core/Types/ValueType.h"

namespace Vantor::Types {

/// A value of any number of octets.
/// @throws InvalidLength from the constructors when there are 2^32 octets or more.
class ByteStringBase : public SimpleDataType {
 public:
  const uint8* rawBuffer() const override { return addressOf(octets_); }
  uint32 encodedSize() const override { return static_cast<uint32>(octets_.size()); }

 protected:
  ByteStringBase() = default;
  // Copied also where they could be moved: a value keeps its octets.
  ByteStringBase(const ByteStringBase&) = default;
  ByteStringBase& operator=(const ByteStringBase&) = default;
  explicit ByteStringBase(Bytes octets);
  /// `head`, followed by `size` octets at `rest`, which may be null when `size` is 0.
  ByteStringBase(const Bytes& head, const uint8* rest, std::size_t size);

 private:
  Bytes octets_;
};

/// Any octets, none included.
template <class Derived>
class ByteString : public ValueType<Derived, ByteStringBase> {
 public:
  ByteString() = default;
  explicit ByteString(Bytes octets) : ValueType<Derived, ByteStringBase>(std::move(octets)) {}
  /// Copies; `bytes` may be null when `size` is 0.
  /// @throws InvalidLength when there are 2^32 octets or more.
  ByteString(const uint8* bytes, std::size_t size) : ValueType<Derived, ByteStringBase>(Bytes(), bytes, size) {}

  static auto_ptr<Derived> decode(const uint8* bytes, std::size_t size) {
    return std::make_unique<Derived>(bytes, size);
  }
};

}  // namespace Vantor::Types
