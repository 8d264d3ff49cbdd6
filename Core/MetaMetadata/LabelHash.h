#pragma once

#include <functional>
#include <string_view>

#include "Core/DataIO/BigEndian.h"
#include "Core/Platform/Types.h"

namespace Vantor::MetaMetadata {

/// Spreads a number over 32 bits: both halves folded, then the multiplicative hash with the golden ratio's bits.
inline uint32 hashOf(uint64 number) {
  return static_cast<uint32>(((number ^ (number >> 32)) * 0x9E3779B97F4A7C15u) >> 32);
}

inline uint32 hashOfText(std::string_view text) { return hashOf(std::hash<std::string_view>()(text)); }

/// The octets of a universal label that distinguish definitions, for hashing and comparing.
struct LabelIdentity {
  uint64 head;
  uint64 tail;

  uint32 hash() const { return hashOf(tail) ^ hashOf(head); }
  friend bool operator==(const LabelIdentity& left, const LabelIdentity& right) {
    return left.head == right.head && left.tail == right.tail;
  }
};

/// All octets of a property's label but octet 8, the version of the register that added it (ST 336).
inline LabelIdentity elementIdentity(const uint8* label) {
  return {DataIO::readBigEndian<uint64>(label) & 0xFFFFFFFFFFFFFF00u, DataIO::readBigEndian<uint64>(label + 8)};
}
/// All octets of a set's key but octet 6, the coding of the group, and octet 8, the version (ST 336).
inline LabelIdentity groupIdentity(const uint8* key) {
  return {DataIO::readBigEndian<uint64>(key) & 0xFFFFFFFFFF00FF00u, DataIO::readBigEndian<uint64>(key + 8)};
}

}  // namespace Vantor::MetaMetadata
