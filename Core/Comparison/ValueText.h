#pragma once

#include <string>

#include "Core/Types/SimpleDataType.h"

namespace Vantor {

/// A value on one line, for messages: numbers in decimal, texts in quotes, identifiers in dotted pairs, collections in
/// brackets, octets that nothing is known of in hexadecimal. UTF-8 without control characters.
///
/// A long value is cut and its whole size told behind it, so that values that differ may have one text.
std::string valueText(const Types::SimpleDataType& value);
/// The same for octets.
std::string octetsText(const uint8* octets, std::size_t size);

}  // namespace Vantor
