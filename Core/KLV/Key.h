#pragma once

#include <array>
#include <cstddef>
#include <functional>

#include "Core/Platform/StringForm.h"
#include "Core/Platform/Types.h"

namespace Vantor::KLV {

/// The 16-byte key of a KLV triplet, a SMPTE universal label (ST 298, ST 336). A value without heap memory.
/// Octets are counted from 1, as the standards count them.
class Key {
 public:
  static constexpr uint32 kSize = 16;

  /// Sixteen zero octets.
  constexpr Key() = default;
  explicit constexpr Key(const std::array<uint8, kSize>& octets) : octets_(octets) {}
  /// Copies 16 bytes.
  explicit Key(const uint8* bytes);
  /// Reads either text form, whichever is named.
  /// @throws Exceptions::InvalidFormat naming the text when it is neither. A null pointer is an empty text.
  Key(const wstring& text, StringRepresentationEncodingType form);
  Key(const uint16* text, StringRepresentationEncodingType form);

  wstring toString(StringRepresentationEncodingType form = kDottedForm) const;

  /// The size on the wire, in bytes: 16.
  uint32 serializedSize() const { return kSize; }
  const uint8* rawBuffer() const { return octets_.data(); }
  /// @param n  1 to 16.
  constexpr uint8 octet(std::size_t n) const { return octets_[n - 1]; }

  /// This key with octet 6 (the coding of a group) and octet 8 (the version of the register) set to zero.
  Key normalised() const;
  /// Whether the keys differ at most in octets 6 and 8: the same definition, coded otherwise or registered anew.
  bool matches(const Key& other) const { return normalised() == other.normalised(); }

  friend bool operator==(const Key& left, const Key& right) { return left.octets_ == right.octets_; }
  friend bool operator!=(const Key& left, const Key& right) { return left.octets_ != right.octets_; }
  /// Octet by octet from the first.
  friend bool operator<(const Key& left, const Key& right) { return left.octets_ < right.octets_; }

 private:
  std::array<uint8, kSize> octets_{};
};

/// Hashes all 16 octets; to look up by definition hash `normalised()` keys.
struct KeyHash {
  std::size_t operator()(const Key& key) const noexcept;
};

}  // namespace Vantor::KLV

template <>
struct std::hash<Vantor::KLV::Key> : Vantor::KLV::KeyHash {};
