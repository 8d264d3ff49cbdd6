#pragma once

#include "Core/Types/ScalarType.h"

namespace Vantor::Types {

/// An unsigned integer of four octets.
class UInt32 final : public ScalarType<UInt32, uint32> {
 public:
  using ScalarType::ScalarType;
};

}  // namespace Vantor::Types
