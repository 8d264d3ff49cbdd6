#pragma once

#include "Core/Types/ScalarType.h"

namespace Vantor::Types {

/// The scan direction and rotation of a picture, one octet; any number is kept (ST 377-1).
class Orientation final : public ScalarType<Orientation, uint8> {
 public:
  using ScalarType::ScalarType;
};

}  // namespace Vantor::Types
