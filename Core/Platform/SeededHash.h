#pragma once

#include "Core/Platform/Types.h"

namespace Vantor::Platform {

/// Spreads a number, over all of its bits.
constexpr uint64 mixBits(uint64 number) noexcept {
  number = (number ^ number >> 30) * 0xBF58476D1CE4E5B9u;
  number = (number ^ number >> 27) * 0x94D049BB133111EBu;
  return number ^ number >> 31;
}

/// A number drawn when it is first asked for, the same for the rest of the process.
uint64 hashSeed() noexcept;

/// Hashes two numbers that a file chose. The result depends on the process's seed, so that no file can
/// hold values that meet in one bucket of a table.
inline uint64 seededHash(uint64 first, uint64 second) noexcept { return mixBits(mixBits(first ^ hashSeed()) + second); }

}  // namespace Vantor::Platform
