#pragma once

#include "Core/Types/ScalarType.h"

namespace Vantor::Types {

/// A duration in edit units, eight octets; -1 stands for an unknown one (ST 377-1).
class Length final : public ScalarType<Length, int64> {
 public:
  using ScalarType::ScalarType;
};

}  // namespace Vantor::Types
