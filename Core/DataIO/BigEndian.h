#pragma once

#include <cstddef>
#include <type_traits>

#include "Core/Platform/Types.h"

namespace Vantor::DataIO {

/// Reads `sizeof(T)` bytes, most significant first; signed numbers are two's complement. No alignment is needed.
template <class T>
T readBigEndian(const uint8* from) noexcept {
  static_assert(std::is_integral_v<T> && !std::is_same_v<T, bool>, "an integer type");
  using Unsigned = std::make_unsigned_t<T>;
  uint64 number = 0;
  for (std::size_t i = 0; i < sizeof(T); ++i) number = number << 8 | from[i];
  return static_cast<T>(static_cast<Unsigned>(number));
}

/// Writes `sizeof(T)` bytes, most significant first.
template <class T>
void writeBigEndian(uint8* to, T number) noexcept {
  static_assert(std::is_integral_v<T> && !std::is_same_v<T, bool>, "an integer type");
  auto rest = static_cast<uint64>(static_cast<std::make_unsigned_t<T>>(number));
  for (std::size_t i = sizeof(T); i-- > 0; rest >>= 8) to[i] = static_cast<uint8>(rest);
}

}  // namespace Vantor::DataIO
