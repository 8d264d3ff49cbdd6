#pragma once

#include "Core/Types/NarrowStringType.h"

namespace Vantor::Types {

/// Text of ISO/IEC 8859-1 characters.
class ISO8String final : public NarrowStringType<ISO8String> {
 public:
  using NarrowStringType::NarrowStringType;

  static constexpr uint8 kHighest = 0xFF;
};

}  // namespace Vantor::Types
