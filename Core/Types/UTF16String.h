#pragma once

#include "Core/Types/WideStringType.h"

namespace Vantor::Types {

/// Unicode text that stands as big-endian UTF-16 on the wire, without byte order mark (ST 377-1).
class UTF16String final : public WideStringType<UTF16String> {
 public:
  using WideStringType::WideStringType;

  static constexpr Coding kCoding = Coding::kUTF16BigEndian;
};

}  // namespace Vantor::Types
