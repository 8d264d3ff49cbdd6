#pragma once

#include <string_view>

#include "Core/Platform/Types.h"

namespace Vantor::XMLUtils {

/// Makes text fit for XML 1.0, which has no way to write some code units: the controls below U+0020 other than TAB, LF
/// and CR, unpaired surrogates, U+FFFE and U+FFFF.
///
/// Each of them becomes `$#x`, its number in upper-case hexadecimal digits without leading zeros, and `;`. A `$#x` that
/// the text has of its own becomes `$#x24;#x`. `unescapeForbidden(escapeForbidden(text)) == text` holds for every text.
wstring escapeForbidden(const wstring& text);

/// Undoes `escapeForbidden`. Anything that it would not have written, such as `$#x41;` or `$#xfffe;`, stays as it is.
/// @param keepNul  whether `$#x0;` stays as well, for strings that end at a NUL.
wstring unescapeForbidden(const wstring& text, bool keepNul = false);

/// What starts every escape.
constexpr std::u16string_view kEscapeStart = u"$#x";

/// Whether XML 1.0 cannot hold the code unit; a surrogate is judged as an unpaired one.
constexpr bool isForbidden(char16_t unit) {
  if (unit < 0x20) return unit != u'\t' && unit != u'\n' && unit != u'\r';
  return unit >= 0xD800 && (unit <= 0xDFFF || unit >= 0xFFFE);
}

constexpr bool isSurrogatePair(char16_t first, char16_t second) {
  return (first & 0xFC00) == 0xD800 && (second & 0xFC00) == 0xDC00;
}

/// Whether NUL-terminated text starts with `$#x`.
constexpr bool startsEscape(const char16_t* text) { return text[0] == u'$' && text[1] == u'#' && text[2] == u'x'; }

/// Appends the escape of one code unit, whether it needs one or not.
void appendEscape(wstring& out, char16_t unit);

}  // namespace Vantor::XMLUtils
