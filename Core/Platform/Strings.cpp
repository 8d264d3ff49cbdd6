#include "Core/Platform/Strings.h"

#include <utf8.h>

#include <cstring>
#include <iterator>

namespace Vantor {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool isHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

}  // namespace

namespace Platform {

std::string wstringToString(const wstring& text) {
  std::string narrow;
  narrow.reserve(text.size());
  for (const char16_t unit : text) narrow.push_back(unit <= 0xFF ? static_cast<char>(unit) : '?');
  return narrow;
}

wstring stringToWstring(const std::string& text) {
  wstring wide;
  wide.reserve(text.size());
  for (const char octet : text) wide.push_back(static_cast<unsigned char>(octet));
  return wide;
}

wstring utf16ToWstring(const uint16* text, std::size_t units) {
  wstring copy(units, u'\0');
  if (units != 0) std::memcpy(copy.data(), text, units * sizeof(uint16));
  return copy;
}

wstring utf16ToWstring(const uint16* text) {
  if (text == nullptr) return {};
  const auto* octets = reinterpret_cast<const unsigned char*>(text);
  std::size_t units = 0;
  while (octets[2 * units] != 0 || octets[2 * units + 1] != 0) ++units;
  return utf16ToWstring(text, units);
}

}  // namespace Platform

namespace Utils {

std::string wstringToString(const wstring& text) {
  std::string narrow;
  narrow.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t point = text[i];
    if (isHighSurrogate(point) && i + 1 < text.size() && isLowSurrogate(text[i + 1])) {
      point = 0x10000 + ((point - 0xD800) << 10) + (text[++i] - 0xDC00u);
    } else if (isHighSurrogate(point) || isLowSurrogate(point)) {
      point = kReplacement;
    }
    utf8::append(point, std::back_inserter(narrow));
  }
  return narrow;
}

wstring stringToWstring(const std::string& text) {
  std::string wellFormed;
  utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(wellFormed), kReplacement);
  wstring wide;
  utf8::utf8to16(wellFormed.begin(), wellFormed.end(), std::back_inserter(wide));
  return wide;
}

}  // namespace Utils

}  // namespace Vantor
