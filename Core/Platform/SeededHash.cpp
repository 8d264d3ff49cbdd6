#include "Core/Platform/SeededHash.h"

#include <chrono>
#include <exception>
#include <random>

namespace Vantor::Platform {

namespace {

uint64 drawSeed() noexcept {
  constexpr int kBits = 32;
  try {
    std::random_device device;
    return static_cast<uint64>(device()) << kBits | device();
  } catch (const std::exception&) {
    // Where the system has no source of random numbers, the time is better than nothing.
    return mixBits(static_cast<uint64>(std::chrono::steady_clock::now().time_since_epoch().count()));
  }
}

}  // namespace

uint64 hashSeed() noexcept {
  static const uint64 seed = drawSeed();
  return seed;
}

}  // namespace Vantor::Platform
