#pragma once

#include <optional>

#include "Core/Platform/Containers.h"
#include "Core/Types/Text/TypeText.h"

namespace Vantor::Types {

/// Whether values of the type are runs of octets, of any length.
bool isOctetType(Identifiers::Identifier type);

/// Whether people write values of the type as octets: runs of them, pixel layouts, JPEG 2000 parameters.
bool isWrittenInOctets(Identifiers::Identifier type);

bool hasHexPrefix(std::u16string_view text);

/// The octets of hexadecimal digits, two to an octet, in groups of any even length: behind 0x or not, with white space,
/// points, dashes, colons, commas or underscores between them, in braces or not. None for any other text;
/// no octets for an empty text.
std::optional<Bytes> octetsInGroups(std::u16string_view text);

/// Why a text of hexadecimal digits is not a number of octets: "it has 15 octets, not 16"; empty for any other text.
std::string octetFault(std::u16string_view text, std::size_t wanted);

/// The octets on the wire, two digits each, nothing between them.
wstring printOctets(const SimpleDataType& value);

/// The value of these octets; none for a text that `octetsInGroups` refuses.
ParsedValue decodedOctets(Identifiers::Identifier type, std::u16string_view text);

template <class Type>
ParsedValue parseOctets(std::u16string_view text) {
  return decodedOctets(Type::kIdentifier, text);
}

}  // namespace Vantor::Types
