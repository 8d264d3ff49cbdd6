#pragma once

#include "Core/Types/ScalarType.h"

namespace Vantor::Types {

/// An unsigned integer of one octet.
class UInt8 final : public ScalarType<UInt8, uint8> {
 public:
  using ScalarType::ScalarType;
};

}  // namespace Vantor::Types
