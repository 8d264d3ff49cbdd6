#pragma once

#include "Core/Types/ScalarType.h"

namespace Vantor::Types {

/// The standard that a picture's lines come from, one octet; any number is carried (ST 377-1).
class SignalStandard final : public ScalarType<SignalStandard, uint8> {
 public:
  using ScalarType::ScalarType;
};

}  // namespace Vantor::Types
