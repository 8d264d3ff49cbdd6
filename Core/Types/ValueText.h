#pragma once

#include <string_view>

#include "Core/Types/SimpleDataType.h"

/// Values as text and from text. Whatever `textOfValue` gives is read back as an equal value, but for final NULs.
///
///     numbers            decimal digits, "-5"; Boolean 0 or 1, read as "false" and "true" too
///     identifiers        dotted pairs, read as URNs too; a reference is the UUID that it refers to
///     texts              as they are; a UTF16 is one code unit, NUL an empty text
///     Rational           "25/1"
///     VersionType        "1.3", read as 256 * major + minor too
///     ProductVersion     "1.2.3.4.5": major, minor, patch, build, release
///     Timestamp          "2024-02-09T03:04:05.008"; the milliseconds, a multiple of 4, may be left out
///     everything else    the octets on the wire in hexadecimal digits
///     Array, Batch       "[1, 2]", texts in quotes: ["a", "\"b\" \\ \u000A"]
namespace Vantor::Types {

wstring textOfValue(const SimpleDataType& value);

/// White space around everything but texts is ignored, and so is white space between hexadecimal digits.
/// @throws InvalidFormat with the text and what the type accepts; always for kArray and kBatch.
auto_ptr<SimpleDataType> valueFromText(Identifiers::Identifier type, std::u16string_view text);

/// Items may stand without quotes where no text needs them. Shorter texts get NULs up to the size of the longest.
/// @param arrayOrBatch  kArray or kBatch.
/// @throws InvalidFormat as above, and for items that are not of one size on the wire.
auto_ptr<SimpleDataType> collectionFromText(Identifiers::Identifier arrayOrBatch, Identifiers::Identifier itemType,
                                            std::u16string_view text);

/// Whether an empty text is a value of the type: texts and runs of octets.
bool hasEmptyText(Identifiers::Identifier type);

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
