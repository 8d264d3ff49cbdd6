#pragma once

#include "Core/Types/ScalarType.h"

namespace Vantor::Types {

/// The video standard of a picture, one octet; any number is kept (ST 377-1).
class SignalStandard final : public ScalarType<SignalStandard, uint8> {
 public:
  using ScalarType::ScalarType;
};

}  // namespace Vantor::Types
