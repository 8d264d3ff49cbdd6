#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Vantor::KLV {

/// The hexadecimal digits of an identifier of 16 octets or of its beginning, in upper case, from any usual spelling:
/// plain, with a point, hyphen, colon, underscore or comma or with blanks between digits, each group with a "0x" or
/// not, in braces, behind "0x", "urn:uuid:", "urn:smpte:ul:" or "urn:smpte:umid:", whatever the case.
/// @param most  of digits.
/// @return none for a text that has no digits, more of them, or anything else.
std::optional<std::string> identifierDigits(std::string_view text, std::size_t most = 32);

}  // namespace Vantor::KLV
