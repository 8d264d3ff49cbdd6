#pragma once

#include <string>
#include <utility>

#include "Core/Platform/Containers.h"
#include "Core/Types/ValueType.h"

namespace Vantor::Types {

/// Text of 8-bit characters, one octet each. A text read with final NULs writes them again; a text that is made writes
/// none. The empty text of no octets is a value.
class NarrowString : public SimpleDataType {
 public:
  const uint8* rawBuffer() const override { return terminated_.data(); }
  uint32 encodedSize() const override { return static_cast<uint32>(terminated_.size() - 1); }

  /// The text, ended by a NUL.
  const char* value() const { return reinterpret_cast<const char*>(terminated_.data()); }

 protected:
  NarrowString() : terminated_(1, uint8{0}) {}
  // Copied also where they could be moved: a text keeps its NUL.
  NarrowString(const NarrowString&) = default;
  NarrowString& operator=(const NarrowString&) = default;
  /// Takes the text up to its first NUL; null is an empty text.
  /// @throws InvalidLength when it has 2^32 octets or more.
  explicit NarrowString(const char* text);
  bool hasSameValue(const SimpleDataType& other) const override;

  /// Becomes the value of these octets; returns false, and is as it was, when one is above `highest` or when a NUL is
  /// followed by anything but NULs.
  bool readFrom(const uint8* bytes, std::size_t size, uint8 highest);

 private:
  Bytes terminated_;
};

/// The constructors of the 8-bit texts; the derived class gives `static constexpr uint8 kHighest`, the highest octet
/// that is read.
template <class Derived>
class NarrowStringType : public ValueType<Derived, NarrowString> {
 public:
  NarrowStringType() = default;
  /// @param text  ended by a NUL, taken octet by octet; null is an empty text.
  explicit NarrowStringType(const char* text) : ValueType<Derived, NarrowString>(text) {}
  /// Up to the first NUL.
  explicit NarrowStringType(const std::string& text) : NarrowStringType(text.c_str()) {}

  static auto_ptr<Derived> decode(const uint8* bytes, std::size_t size) {
    auto value = std::make_unique<Derived>();
    return static_cast<NarrowStringType&>(*value).readFrom(bytes, size, Derived::kHighest) ? std::move(value) : nullptr;
  }
};

}  // namespace Vantor::Types
