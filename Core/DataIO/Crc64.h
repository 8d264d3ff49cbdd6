#pragma once

#include <cstddef>

#include "Core/DataIO/DataSink.h"
#include "Core/Platform/Types.h"

namespace Vantor::DataIO {

/// The 64-bit cyclic redundancy check of ECMA-182: most significant bit first, starting from 0, not inverted. Checks
/// what is written to it and keeps nothing.
class Crc64 : public DataSink {
 public:
  void write(const uint8* from, std::size_t size) override;
  uint64 position() const override { return size_; }
  uint64 value() const { return value_; }

 private:
  uint64 value_ = 0;
  uint64 size_ = 0;
};

}  // namespace Vantor::DataIO
