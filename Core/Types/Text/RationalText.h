#pragma once

#include "Core/Types/Text/TypeText.h"

namespace Vantor::Types {

/// "25" where the denominator is 1, else "30000/1001".
wstring printRational(const SimpleDataType& value);
/// The same with a colon, for aspect ratios: "16:9".
wstring printRatio(const SimpleDataType& value);
/// A whole number, a decimal fraction, or two numbers with "/" or ":" between them. The decimals of rates that are
/// 1000/1001 of 24, 30, 48, 60, 72, 96 or 120, to two digits or more, rounded or cut, are these rates: 29.97 is
/// 30000/1001, and 23.98 and 23.976 are 24000/1001. Other decimals are reduced fractions.
ParsedValue parseRational(std::u16string_view text);

}  // namespace Vantor::Types
