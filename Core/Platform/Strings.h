#pragma once

#include <string>

#include "Core/Platform/Types.h"

namespace Vantor {

namespace Platform {

/// Narrows text to ISO 8859-1, one octet per code unit; a code unit above 0xFF becomes '?'.
std::string wstringToString(const wstring& text);
/// Widens ISO 8859-1 text, one code unit per octet.
wstring stringToWstring(const std::string& text);

/// Copies NUL-terminated UTF-16 text; a null pointer gives an empty string.
/// Reads 16-bit units whichever of `uint16` and `char16_t` they were stored as.
wstring utf16ToWstring(const uint16* text);
wstring utf16ToWstring(const uint16* text, std::size_t units);

}  // namespace Platform

namespace Utils {

/// Converts to UTF-8, for messages; an unpaired surrogate becomes U+FFFD.
std::string wstringToString(const wstring& text);
/// Converts from UTF-8; an ill-formed sequence becomes U+FFFD.
wstring stringToWstring(const std::string& text);

}  // namespace Utils

}  // namespace Vantor
