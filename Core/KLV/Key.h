#pragma once

#include <array>
#include <cstddef>
#include <functional>

#include "Core/Platform/StringForm.h"
#include "Core/Platform/Types.h"

namespace Vantor::DataIO {
class DataSource;
}

namespace Vantor::KLV {

/// The 16-byte key of a KLV triplet, a SMPTE universal label (ST 298, ST 336). A value without heap memory.
/// Octets are counted from 1, as the standards count them.
class Key {
 public:
  static constexpr uint32 kSize = 16;
  /// ST 336: octet 6 codes how a group is laid out, octet 8 is the version of the register.
  static constexpr std::size_t kCodingOctet = 6;
  static constexpr std::size_t kVersionOctet = 8;

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

  /// Reads the next 16 bytes.
  /// @throws what the source throws when it has fewer.
  static Key read(DataIO::DataSource& source);

  /// The size on the wire, in bytes: 16.
  uint32 serializedSize() const { return kSize; }
  const uint8* rawBuffer() const { return octets_.data(); }
  /// @param n  1 to 16.
  constexpr uint8 octet(std::size_t n) const { return octets_[n - 1]; }

  /// This key with another octet n.
  /// @param n  1 to 16.
  constexpr Key withOctet(std::size_t n, uint8 value) const {
    Key key = *this;
    key.octets_[n - 1] = value;
    return key;
  }
  /// This key with coding and version set to zero.
  constexpr Key normalised() const { return withOctet(kCodingOctet, 0).withOctet(kVersionOctet, 0); }
  /// Whether the keys differ at most in coding and version: the same definition, coded or registered again.
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
