#include "Core/DataIO/Crc64.h"

#include <array>

namespace Vantor::DataIO {

namespace {

constexpr uint64 kPolynomial = 0x42F0E1EBA9EA3693;

/// The remainder that each byte leaves when it is shifted out.
constexpr std::array<uint64, 256> remainders() {
  std::array<uint64, 256> remainders{};
  for (std::size_t octet = 0; octet < remainders.size(); ++octet) {
    uint64 rest = static_cast<uint64>(octet) << 56;
    for (int bit = 0; bit < 8; ++bit) rest = rest << 1 ^ (rest >> 63 != 0 ? kPolynomial : 0);
    remainders[octet] = rest;
  }
  return remainders;
}

constexpr std::array<uint64, 256> kRemainders = remainders();

}  // namespace

void Crc64::write(const uint8* from, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i) value_ = value_ << 8 ^ kRemainders[(value_ >> 56 ^ from[i]) & 0xFFU];
  size_ += size;
}

}  // namespace Vantor::DataIO
