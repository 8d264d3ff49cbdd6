#pragma once

#include <string_view>
#include <type_traits>
#include <xercesc/util/XercesDefs.hpp>

#include "Core/Platform/Strings.h"

namespace Vantor::XMLUtils {

static_assert(std::is_same_v<XMLCh, wstring::value_type>, "Xerces has to be built with char16_t as its XMLCh");

/// NUL-terminated UTF-16 text where it stands, with the NUL behind the view; a null pointer, as the DOM gives for an
/// absent name or value, gives an empty text.
inline std::u16string_view viewOf(const XMLCh* text) { return text == nullptr ? u"" : text; }

/// The same, copied.
inline wstring utf16ToWstring(const XMLCh* text) { return wstring(viewOf(text)); }
/// The same for text stored as `uint16`.
using Platform::utf16ToWstring;

/// Whether a text is nothing but XML white space: blank, TAB, LF, CR.
inline bool isBlank(std::u16string_view text) { return text.find_first_not_of(u" \t\n\r") == text.npos; }

}  // namespace Vantor::XMLUtils
