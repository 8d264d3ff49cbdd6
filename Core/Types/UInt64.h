#pragma once

#include "Core/Types/ScalarType.h"

namespace Vantor::Types {

/// An unsigned integer of eight octets.
class UInt64 final : public ScalarType<UInt64, uint64> {
 public:
  using ScalarType::ScalarType;
};

}  // namespace Vantor::Types
