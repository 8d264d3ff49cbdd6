#pragma once

#include <array>
#include <charconv>

#include "Core/Platform/Types.h"

namespace Vantor::Platform {

/// Decimal digits as a UTF-16 stream in the classic locale inserts them: no grouping, no padding, "-" before a negative
/// number. 8-bit integers are numbers here, not characters.
template <class Integer>
wstring toDecimal(Integer number) {
  std::array<char, 24> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  return wstring(digits.data(), end);
}

}  // namespace Vantor::Platform
