#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>

#include "Core/KLV/IdentifierText.h"
#include "Core/Platform/SeededHash.h"
#include "Core/Platform/StringForm.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/FixedSizeType.h"

namespace Vantor::Types {

/// An identifier of a fixed count of octets: cheap to copy, ordered octet by octet, a key of maps.
///
/// The derived class gives its text forms: `static wstring formatText(const uint8*, StringRepresentationEncodingType)`
/// and `static bool parseText(std::u16string_view, uint8*)`, which fills all octets or returns false.
template <class Derived>
class IdentifierType : public FixedSizeType<Derived> {
 public:
  using FixedSizeType<Derived>::kSize;

  /// All octets zero.
  IdentifierType() = default;
  explicit IdentifierType(const std::array<uint8, kSize>& octets) { this->octets_ = octets; }
  /// Copies `kSize` octets.
  explicit IdentifierType(const uint8* bytes) { std::memcpy(this->octets_.data(), bytes, kSize); }
  /// Reads any of the type's text forms, upper or lower case, whichever form is named.
  /// @param text  ended by a NUL; null is an empty text.
  /// @throws InvalidFormat naming the text and the type.
  IdentifierType(const uint16* text, StringRepresentationEncodingType form)
      : IdentifierType(Platform::utf16ToWstring(text), form) {}
  IdentifierType(const wstring& text, StringRepresentationEncodingType) {
    if (Derived::parseText(text, this->octets_.data())) return;
    KLV::raiseInvalidText(text, Identifiers::name(Derived::kIdentifier));
  }

  virtual wstring toString(StringRepresentationEncodingType form = kDottedForm) const {
    return Derived::formatText(this->octets_.data(), form);
  }
  /// The dotted form in UTF-8, for messages.
  std::string dottedText() const { return Utils::wstringToString(toString(kDottedForm)); }

  /// @param n  counted from 1, as the standards count.
  uint8 octet(std::size_t n) const { return this->octets_[n - 1]; }

  friend bool operator<(const Derived& left, const Derived& right) {
    return std::memcmp(left.rawBuffer(), right.rawBuffer(), kSize) < 0;
  }
};

/// Hashes the octets of an identifier, in another way in every process (`Platform::seededHash`).
struct IdentifierHash {
  template <class Derived>
  std::size_t operator()(const IdentifierType<Derived>& identifier) const noexcept {
    constexpr std::size_t kSize = IdentifierType<Derived>::kSize;
    uint64 hash = kSize;
    for (std::size_t at = 0; at < kSize; at += sizeof(uint64)) {
      uint64 piece = 0;
      std::memcpy(&piece, identifier.rawBuffer() + at, std::min(sizeof piece, kSize - at));
      hash = Platform::seededHash(hash, piece);
    }
    return static_cast<std::size_t>(hash);
  }
};

}  // namespace Vantor::Types
