#pragma once

#include "Core/Types/FixedSizeType.h"

namespace Vantor::Types {

/// One octet: 0 is false, 1 is true, and no other octet is a Boolean.
class Boolean final : public FixedSizeType<Boolean> {
 public:
  explicit Boolean(bool value = false) { octets_[0] = value ? 1 : 0; }

  bool value() const { return octets_[0] != 0; }

  static auto_ptr<Boolean> decode(const uint8* bytes, std::size_t size) {
    return size == kSize && *bytes <= 1 ? FixedSizeType::decode(bytes, size) : nullptr;
  }
};

}  // namespace Vantor::Types
