#pragma once

#include <cstddef>

#include "Core/Platform/Types.h"

namespace Vantor::DataIO {

/// The 64-bit cyclic redundancy check of ECMA-182: most significant bit first, starting from 0, not inverted.
class Crc64 {
 public:
  void add(const uint8* from, std::size_t size);
  uint64 value() const { return value_; }

 private:
  uint64 value_ = 0;
};

}  // namespace Vantor::DataIO
