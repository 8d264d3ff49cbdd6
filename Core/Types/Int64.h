#pragma once

#include "Core/Types/ScalarType.h"

namespace Vantor::Types {

/// A signed integer of eight octets.
class Int64 final : public ScalarType<Int64, int64> {
 public:
  using ScalarType::ScalarType;
};

}  // namespace Vantor::Types
