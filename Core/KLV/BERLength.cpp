#include "Core/KLV/BERLength.h"

#include <string>

#include "Core/Platform/Raise.h"

namespace Vantor::KLV {

namespace {

/// In the long form the first octet is 0x80 plus the number of octets that follow.
constexpr uint8 kLongForm = 0x80;
constexpr uint8 kCustomaryOctets = 4;

/// The fewest octets that a value needs, without regard to custom.
uint8 fewestOctets(uint64 value) {
  if (value < kLongForm) return 1;
  uint8 octets = 2;
  while (octets < kMaxBEROctets && value >> 8 * (octets - 1) != 0) ++octets;
  return octets;
}

void requireKnownForm(uint8 first, uint64 offset) {
  if (first > kLongForm && first < kLongForm + kMaxBEROctets) return;
  const std::string found = first == kLongForm
                                ? "the indefinite form (0x80)"
                                : "a first octet for " + std::to_string(first - kLongForm + 1) + " octets";
  Exceptions::raise<Exceptions::ParseError>("at byte offset {}: expected a BER length of 1 to 9 octets, found {}",
                                            offset, found);
}

void requireFollowing(const DataIO::DataSource& source, std::size_t following, uint64 offset) {
  if (source.remaining() >= following) return;
  Exceptions::raise<Exceptions::ParseError>("at byte offset {}: expected a BER length of {} octets, found {} octets",
                                            offset, following + 1, source.remaining() + 1);
}

}  // namespace

BERLength readBERLength(DataIO::DataSource& source) {
  const uint64 offset = source.position();
  const auto first = DataIO::readBigEndian<uint8>(source);
  if (first < kLongForm) return {first, 1};
  requireKnownForm(first, offset);
  const auto following = static_cast<uint8>(first - kLongForm);
  requireFollowing(source, following, offset);
  uint8 bytes[kMaxBEROctets - 1] = {};
  source.read(bytes + sizeof bytes - following, following);
  return {DataIO::readBigEndian<uint64>(bytes), static_cast<uint8>(following + 1)};
}

uint8 berOctets(uint64 value, uint8 octets) {
  if (octets > kMaxBEROctets) {
    Exceptions::raise<Exceptions::InvalidLength>("expected at most 9 octets for a BER length, found a demand for {}",
                                                 octets);
  }
  const uint8 fewest = fewestOctets(value);
  if (octets != 0) return octets < fewest ? fewest : octets;
  if (fewest == 1) return 1;
  return fewest <= kCustomaryOctets ? kCustomaryOctets : kMaxBEROctets;
}

void writeBERLength(DataIO::DataSink& sink, uint64 value, uint8 octets) {
  const uint8 written = berOctets(value, octets);
  if (written == 1) return DataIO::writeBigEndian<uint8>(sink, static_cast<uint8>(value));
  uint8 bytes[kMaxBEROctets];
  DataIO::writeBigEndian<uint64>(bytes + 1, value);
  uint8* const first = bytes + kMaxBEROctets - written;
  *first = static_cast<uint8>(kLongForm + written - 1);
  sink.write(first, written);
}

}  // namespace Vantor::KLV
