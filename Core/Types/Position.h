#pragma once

#include "Core/Types/ScalarType.h"

namespace Vantor::Types {

/// A place on a time line in edit units from its origin, eight octets (ST 377-1).
class Position final : public ScalarType<Position, int64> {
 public:
  using ScalarType::ScalarType;
};

}  // namespace Vantor::Types
