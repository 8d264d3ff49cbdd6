#pragma once

#include "Core/Types/Text/TypeText.h"

namespace Vantor::Types {

/// "2024-02-09T03:04:05.008", in UTC. Octets that are no date and time are hexadecimal digits behind 0x. All zeros
/// are an unknown time (ST 377-1), and no other date has a month or day of 0.
wstring printTimestamp(const SimpleDataType& value);
/// Dates and times of ISO 8601, extended or basic: a date alone is its midnight, seconds and their fraction may be
/// missing, "Z" is UTC, as a time without it is, and another offset is converted. A fraction is cut to units of 4 ms.
ParsedValue parseTimestamp(std::u16string_view text);

}  // namespace Vantor::Types
