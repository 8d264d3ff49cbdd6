#pragma once

#include "Core/Types/WideStringType.h"

namespace Vantor::Types {

/// Unicode text that stands as UTF-8 on the wire.
class UTF8String final : public WideStringType<UTF8String> {
 public:
  using WideStringType::WideStringType;

  static constexpr Coding kCoding = Coding::kUTF8;
};

}  // namespace Vantor::Types
