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

/// The octets of an identification that count. The halves of an AUID stand in either order, since writers swap those of
/// UUIDs, and some those of labels (ST 377-1): both orders are one identification.
/// @param counting  the octets of the first half of a label that count.
inline LabelIdentity auidIdentity(const uint8* octets, uint64 counting) {
  constexpr uint32 kLabelStart = 0x060E2B34;  // ST 298
  const auto first = DataIO::readBigEndian<uint64>(octets), second = DataIO::readBigEndian<uint64>(octets + 8);
  if (first >> 32 == kLabelStart) return {first & counting, second};
  if (second >> 32 == kLabelStart) return {second & counting, first};
  return first < second ? LabelIdentity{second, first} : LabelIdentity{first, second};
}

/// All octets of a property's label but octet 8, the version of the register that added it (ST 336).
inline LabelIdentity elementIdentity(const uint8* label) { return auidIdentity(label, 0xFFFFFFFFFFFFFF00u); }
/// All octets of a set's key but octet 6, the coding of the group, and octet 8, the version (ST 336).
inline LabelIdentity groupIdentity(const uint8* key) { return auidIdentity(key, 0xFFFFFFFFFF00FF00u); }

}  // namespace Vantor::MetaMetadata
