#pragma once

#include "Core/Types/ScalarType.h"

namespace Vantor::Types {

/// A signed integer of four octets.
class Int32 final : public ScalarType<Int32, int32> {
 public:
  using ScalarType::ScalarType;
};

}  // namespace Vantor::Types
