#pragma once

#include <string_view>
#include <type_traits>
#include <xercesc/util/XercesDefs.hpp>

#include "Core/Platform/Types.h"

namespace Vantor::XMLUtils {

static_assert(std::is_same_v<XMLCh, wstring::value_type>, "Xerces has to be built with char16_t as its XMLCh");

/// Copies NUL-terminated UTF-16 text; a null pointer, as the DOM gives for an absent name or value, gives an empty
/// string.
wstring utf16ToWstring(const XMLCh* text);
/// The same for text stored as `uint16`.
wstring utf16ToWstring(const uint16* text);

/// The same text where it stands; the view ends at a NUL.
inline std::u16string_view viewOf(const XMLCh* text) { return text == nullptr ? u"" : text; }

/// Whether a text is nothing but XML white space: blank, TAB, LF, CR.
inline bool isBlank(std::u16string_view text) { return text.find_first_not_of(u" \t\n\r") == text.npos; }

}  // namespace Vantor::XMLUtils
