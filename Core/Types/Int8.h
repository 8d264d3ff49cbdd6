#pragma once

#include "Core/Types/ScalarType.h"

namespace Vantor::Types {

/// A signed integer of one octet.
class Int8 final : public ScalarType<Int8, int8> {
 public:
  using ScalarType::ScalarType;
};

}  // namespace Vantor::Types
