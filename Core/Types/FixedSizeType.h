#pragma once

#include <array>
#include <cstring>

#include "Core/Types/ValueType.h"

namespace Vantor::Types {

/// A value whose type alone fixes its size; it holds its octets itself and needs no heap memory.
template <class Derived>
class FixedSizeType : public ValueType<Derived> {
 public:
  static constexpr uint32 kSize = TypeTraits<Derived>::kSize;
  static_assert(kSize != 0, "the type list gives this type no fixed size");

  const uint8* rawBuffer() const override { return octets_.data(); }
  uint32 encodedSize() const override { return kSize; }

  static auto_ptr<Derived> decode(const uint8* bytes, std::size_t size) {
    if (size != kSize) return nullptr;
    auto value = std::make_unique<Derived>();
    std::memcpy(value->octets_.data(), bytes, kSize);
    return value;
  }

 protected:
  FixedSizeType() = default;

  std::array<uint8, kSize> octets_{};
};

}  // namespace Vantor::Types
