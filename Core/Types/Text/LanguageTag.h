#pragma once

#include <string_view>

namespace Vantor::Types {

/// Whether a text has the form of a language tag: "en", "de-CH", "zh-Hant-TW", "x-house" (RFC 5646, section 2.1). The
/// subtags are not looked up.
bool isLanguageTag(std::u16string_view text);

/// Whether a text is one or several tags with commas or white space between them.
/// No tag may be missing between commas.
bool isLanguageTagList(std::u16string_view text);

/// Whether a text has the form of a language code of ISO 639: two or three letters.
bool isLanguageCode(std::u16string_view text);

}  // namespace Vantor::Types
