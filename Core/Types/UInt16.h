#pragma once

#include "Core/Types/ScalarType.h"

namespace Vantor::Types {

/// An unsigned integer of two octets.
class UInt16 final : public ScalarType<UInt16, uint16> {
 public:
  using ScalarType::ScalarType;
};

}  // namespace Vantor::Types
