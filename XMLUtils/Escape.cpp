#include "XMLUtils/Escape.h"

#include <algorithm>

#include "Core/Platform/HexDigits.h"

namespace Vantor::XMLUtils {

namespace {

/// One escape at the start of `text`.
struct Escape {
  char16_t unit;
  std::size_t length;  // 0: there is none
};

Escape readEscape(std::u16string_view text) {
  if (text.substr(0, kEscapeStart.size()) != kEscapeStart) return {0, 0};
  const auto end = text.substr(0, kEscapeStart.size() + 5).find(u';');
  if (end == std::u16string_view::npos) return {0, 0};
  int number = 0;
  for (const char16_t digit : text.substr(kEscapeStart.size(), end - kEscapeStart.size())) {
    number = number * 16 + std::max(Platform::hexDigit(digit), 0);
  }
  const auto unit = static_cast<char16_t>(number);
  wstring written;
  appendEscape(written, unit);
  const bool isEscape = text.substr(0, end + 1) == written && (isForbidden(unit) || unit == kEscapeStart[0]);
  return isEscape ? Escape{unit, end + 1} : Escape{0, 0};
}

}  // namespace

void appendEscape(wstring& out, char16_t unit) {
  out.append(kEscapeStart);
  const auto digits = Platform::hexNumber<wstring>(static_cast<uint16>(unit));
  out += digits.substr(std::min(digits.find_first_not_of(u'0'), digits.size() - 1));
  out += u';';
}

wstring escapeForbidden(const wstring& text) {
  wstring out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    if (i + 1 < text.size() && isSurrogatePair(unit, text[i + 1])) {
      out.append(text, i++, 2);
    } else if (isForbidden(unit) || startsEscape(text.c_str() + i)) {
      appendEscape(out, unit);
    } else {
      out += unit;
    }
  }
  return out;
}

wstring unescapeForbidden(const wstring& text, bool keepNul) {
  const std::u16string_view view = text;
  wstring out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const auto start = std::min(view.find(kEscapeStart, i), view.size());
    out.append(view.substr(i, start - i));
    const auto escape = readEscape(view.substr(start));
    const bool isKept = escape.length == 0 || (keepNul && escape.unit == u'\0');
    if (start < view.size()) out += isKept ? view[start] : escape.unit;
    i = start + (isKept ? 1 : escape.length);
  }
  return out;
}

}  // namespace Vantor::XMLUtils
