#pragma once

#include "Core/DataIO/BigEndian.h"
#include "Core/Types/FixedSizeType.h"

namespace Vantor::Types {

/// One integer, big-endian; signed numbers in two's complement (ST 377-1).
template <class Derived, class Number>
class ScalarType : public FixedSizeType<Derived> {
 public:
  static_assert(sizeof(Number) == FixedSizeType<Derived>::kSize, "the type list gives this type another size");

  explicit ScalarType(Number value = 0) { DataIO::writeBigEndian<Number>(this->octets_.data(), value); }

  Number value() const { return DataIO::readBigEndian<Number>(this->octets_.data()); }
};

}  // namespace Vantor::Types
