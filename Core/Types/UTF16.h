#pragma once

#include "Core/Types/ScalarType.h"

namespace Vantor::Types {

/// One UTF-16 code unit, two octets, big-endian; not necessarily a whole character.
class UTF16 final : public ScalarType<UTF16, uint16> {
 public:
  using ScalarType::ScalarType;
};

}  // namespace Vantor::Types
