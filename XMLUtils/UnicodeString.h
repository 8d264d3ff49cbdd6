#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <xercesc/util/XercesDefs.hpp>

#include "XMLUtils/Strings.h"

namespace Vantor::XMLUtils {

/// UTF-16 text in the pointer forms that the DOM and the loading functions take.
///
/// A view is valid until the string is assigned to, moved from or destroyed. Text may hold NULs, but a reader of
/// NUL-terminated text sees only the part before the first one.
class UnicodeString {
 public:
  UnicodeString() = default;
  // NOLINTBEGIN(google-explicit-constructor): stands in for DOM arguments
  /// 8-bit text is read as ISO 8859-1: every octet becomes the code unit of the same number. A null pointer is empty
  /// text.
  UnicodeString(const std::string& text) : text_(Platform::stringToWstring(text)) {}
  UnicodeString(const char* text) : UnicodeString(std::string(text == nullptr ? "" : text)) {}
  /// NUL-terminated UTF-16; a null pointer is empty text.
  UnicodeString(const XMLCh* text) : text_(utf16ToWstring(text)) {}
  UnicodeString(const uint16* text) : text_(utf16ToWstring(text)) {}
  UnicodeString(wstring text) noexcept : text_(std::move(text)) {}
  // NOLINTEND(google-explicit-constructor)

  /// The text, NUL-terminated, never null.
  const XMLCh* wchar() const noexcept { return text_.c_str(); }
  /// The same code units as `uint16`, NUL-terminated, never null. Their object type stays `char16_t`: copy them with
  /// `utf16ToWstring` or `std::memcpy`, or read them as bytes.
  const uint16* utf16() const noexcept { return reinterpret_cast<const uint16*>(text_.c_str()); }
  /// Bytes of the text without its terminator, twice its code units: what `loadDocumentFromBuffer` takes.
  std::size_t utf16Size() const noexcept { return text_.size() * sizeof(XMLCh); }

  const wstring& toWstring() const noexcept { return text_; }
  std::size_t size() const noexcept { return text_.size(); }
  bool empty() const noexcept { return text_.empty(); }

  /// Comparison goes code unit by code unit.
  friend bool operator==(const UnicodeString& a, const UnicodeString& b) noexcept { return a.text_ == b.text_; }
  friend bool operator!=(const UnicodeString& a, const UnicodeString& b) noexcept { return a.text_ != b.text_; }
  friend bool operator<(const UnicodeString& a, const UnicodeString& b) noexcept { return a.text_ < b.text_; }

 private:
  wstring text_;
};

}  // namespace Vantor::XMLUtils
