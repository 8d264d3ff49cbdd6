#pragma once

#include "Core/Types/ScalarType.h"

namespace Vantor::Types {

/// How a picture is scanned and turned, one octet; any number is carried (ST 377-1).
class Orientation final : public ScalarType<Orientation, uint8> {
 public:
  using ScalarType::ScalarType;
};

}  // namespace Vantor::Types
