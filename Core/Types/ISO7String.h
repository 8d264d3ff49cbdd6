#pragma once

#include "Core/Types/NarrowStringType.h"

namespace Vantor::Types {

/// Text of ISO/IEC 646 characters: octets above 0x7F are not read. A text from a program is not checked.
class ISO7String final : public NarrowStringType<ISO7String> {
 public:
  using NarrowStringType::NarrowStringType;

  static constexpr uint8 kHighest = 0x7F;
};

}  // namespace Vantor::Types
