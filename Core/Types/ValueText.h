#pragma once

#include <string_view>

#include "Core/Types/SimpleDataType.h"

/// Values as documents have them. People read and write other forms (Core/Types/Text/TypeText.h).
///
///     numbers            decimal digits, "-5"; Boolean 0 or 1, read as "false" and "true" too
///     identifiers        dotted pairs; a reference is the UUID that it refers to
///     texts              as they are; a UTF16 is one code unit, NUL an empty text
///     everything else    the octets on the wire in hexadecimal digits; documents have elements for most of these
namespace Vantor::Types {

wstring textOfValue(const SimpleDataType& value);

/// The value of an empty text: of texts and runs of octets; null for other types.
auto_ptr<SimpleDataType> emptyValue(Identifiers::Identifier type);

/// The text of a number, identifier or run of octets without the white space that is ignored, a Boolean as a digit;
/// texts of other types as they are.
/// @throws InvalidFormat for a text that is no number of the type, more than one word, or not hexadecimal.
wstring checkedText(Identifiers::Identifier type, std::u16string_view text);

/// A text without the white space around it.
std::u16string_view trimmed(std::u16string_view text);

/// The first 40 code units of a text in single quotes, for messages; "..." stands for the rest.
wstring excerpt(std::u16string_view text);

/// A text in double quotes; quotes, backslashes and control characters within are escaped: \" \\ \u000A.
wstring quotedText(std::u16string_view text);

}  // namespace Vantor::Types
