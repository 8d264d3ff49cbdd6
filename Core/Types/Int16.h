#pragma once

#include "Core/Types/ScalarType.h"

namespace Vantor::Types {

/// A signed integer of two octets.
class Int16 final : public ScalarType<Int16, int16> {
 public:
  using ScalarType::ScalarType;
};

}  // namespace Vantor::Types
