#pragma once

#include "Core/Platform/Containers.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/ValueType.h"

namespace Vantor::Types {

/// Unicode text, as UTF-16 for callers. A text read with final NULs writes them again; a text that is made writes none.
/// The empty text of no octets is a value.
class WideString : public SimpleDataType {
 public:
  const uint8* rawBuffer() const override { return addressOf(octets_); }
  uint32 encodedSize() const override { return static_cast<uint32>(octets_.size()); }

  /// The text in the machine's byte order, ended by a NUL.
  const uint16* value() const { return terminated_.data(); }
  /// Count of `value()`'s code units, the NUL not counted.
  std::size_t length() const { return terminated_.size() - 1; }

 protected:
  /// How a text stands on the wire.
  enum class Coding { kUTF8, kUTF16BigEndian };

  WideString() : terminated_(1, uint16{0}) {}
  // Copied also where they could be moved: a text keeps its NUL.
  WideString(const WideString&) = default;
  WideString& operator=(const WideString&) = default;
  /// Takes the text up to its first NUL.
  /// @throws InvalidFormat naming the type when a surrogate stands alone, InvalidLength when it has 2^32 octets or
  /// more.
  WideString(const wstring& text, Coding coding, const char* type);
  bool hasSameValue(const SimpleDataType& other) const override;

  /// Becomes the value of these octets; returns false, and is as it was, when they are no well-formed text followed by
  /// nothing but NULs.
  bool readFrom(const uint8* bytes, std::size_t size, Coding coding);

 private:
  Bytes octets_;
  Templates::vector<uint16> terminated_;
};

/// The constructors of the Unicode texts; the derived class gives `static constexpr Coding kCoding`.
template <class Derived>
class WideStringType : public ValueType<Derived, WideString> {
 public:
  WideStringType() = default;
  /// @param text  ended by a NUL; null is an empty text.
  /// @throws InvalidFormat when a surrogate stands alone.
  explicit WideStringType(const uint16* text) : WideStringType(Platform::utf16ToWstring(text)) {}
  /// Up to the first NUL.
  explicit WideStringType(const wstring& text)
      : ValueType<Derived, WideString>(text, Derived::kCoding, Identifiers::name(TypeTraits<Derived>::kIdentifier)) {}

  static auto_ptr<Derived> decode(const uint8* bytes, std::size_t size) {
    auto value = std::make_unique<Derived>();
    return static_cast<WideStringType&>(*value).readFrom(bytes, size, Derived::kCoding) ? std::move(value) : nullptr;
  }
};

}  // namespace Vantor::Types
