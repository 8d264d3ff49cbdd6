#pragma once

#include <array>
#include <charconv>
#include <limits>
#include <string_view>
#include <type_traits>

#include "Core/Platform/Types.h"

namespace Vantor::Platform {

/// Decimal digits as a UTF-16 stream in the classic locale inserts them: no grouping, no padding, "-" before a negative
/// number. 8-bit integers are numbers here, not characters.
template <class Integer>
wstring toDecimal(Integer number) {
  std::array<char, 24> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  return wstring(digits.data(), end);
}

/// Reads a decimal number from the start of a text as a stream in the classic locale extracts it: leading white space
/// is skipped, a sign may follow, and reading stops at the first unit that is no digit. Text without a number gives 0;
/// a number beyond the type gives the type's limit; "-n" read as an unsigned type wraps around, as `strtoul` has it.
template <class Integer>
Integer readDecimal(std::u16string_view text) {
  using Unsigned = std::make_unsigned_t<Integer>;
  using Limits = std::numeric_limits<Integer>;
  std::size_t at = 0;
  while (at < text.size() && (text[at] == u' ' || (text[at] >= u'\t' && text[at] <= u'\r'))) ++at;
  const bool isNegative = at < text.size() && text[at] == u'-';
  if (isNegative || (at < text.size() && text[at] == u'+')) ++at;

  const Unsigned largest = std::is_signed_v<Integer> && isNegative ? static_cast<Unsigned>(Limits::max()) + 1u
                                                                   : static_cast<Unsigned>(Limits::max());
  Unsigned magnitude = 0;
  for (; at < text.size() && text[at] >= u'0' && text[at] <= u'9'; ++at) {
    const auto digit = static_cast<Unsigned>(text[at] - u'0');
    if (magnitude > (largest - digit) / 10)
      return std::is_signed_v<Integer> && isNegative ? Limits::min() : Limits::max();
    magnitude = static_cast<Unsigned>(magnitude * 10 + digit);
  }
  return static_cast<Integer>(isNegative ? static_cast<Unsigned>(0 - magnitude) : magnitude);
}

}  // namespace Vantor::Platform
