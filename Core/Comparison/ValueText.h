#pragma once

#include <string>

#include "Core/Types/SimpleDataType.h"

namespace Vantor {

/// A value on one line, for messages: its text (Core/Types/ValueText.h), but texts in quotes, Booleans in words and
/// UTF16 units as numbers. UTF-8 without control characters.
///
/// Long values are cut and followed by their size, so two different values may have one text here.
std::string valueText(const Types::SimpleDataType& value);
/// The same for octets.
std::string octetsText(const uint8* octets, std::size_t size);

}  // namespace Vantor
