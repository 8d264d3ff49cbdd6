#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

#include "Core/Platform/Containers.h"
#include "Core/Platform/Types.h"

/// Octets and numbers as hexadecimal digits. `Text` is a string of any character type.
namespace Vantor::Platform {

enum class DigitCase { kUpper, kLower };

/// By code unit; -1 for what is no digit. A table, because no processor predicts a branch on digits.
inline constexpr auto kHexDigitValues = [] {
  std::array<int8, 256> values{};
  for (auto& value : values) value = -1;
  for (int8 i = 0; i < 10; ++i) values['0' + i] = i;
  for (int8 i = 0; i < 6; ++i) values['a' + i] = values['A' + i] = static_cast<int8>(10 + i);
  return values;
}();

/// The value of a digit in either case; -1 for any other code unit.
constexpr int hexDigit(char32_t unit) { return unit < kHexDigitValues.size() ? kHexDigitValues[unit] : -1; }

/// The octet that two digits stand for; negative when one of them is no digit.
constexpr int hexOctet(char32_t high, char32_t low) { return hexDigit(high) * 16 | hexDigit(low); }

/// Appends the two digits of an octet.
template <class Text>
void appendHex(Text& text, uint8 octet, DigitCase digitCase = DigitCase::kUpper) {
  const char* const digits = digitCase == DigitCase::kUpper ? "0123456789ABCDEF" : "0123456789abcdef";
  text += static_cast<typename Text::value_type>(digits[octet >> 4]);
  text += static_cast<typename Text::value_type>(digits[octet & 0x0F]);
}

/// Two digits an octet, nothing between them.
template <class Text>
Text hexText(const uint8* octets, std::size_t size, DigitCase digitCase = DigitCase::kUpper) {
  Text text;
  text.reserve(2 * size);
  for (std::size_t i = 0; i < size; ++i) appendHex(text, octets[i], digitCase);
  return text;
}

/// All digits of an unsigned number, `2 * sizeof(Number)` of them.
template <class Text, class Number>
Text hexNumber(Number number, DigitCase digitCase = DigitCase::kUpper) {
  Text text;
  for (std::size_t i = sizeof(Number); i-- > 0;) appendHex(text, static_cast<uint8>(number >> 8 * i), digitCase);
  return text;
}

/// The number that `hexNumber` writes so, in either case; none for any other text.
template <class Number>
std::optional<Number> numberFromHex(std::string_view text) {
  if (text.size() != 2 * sizeof(Number)) return std::nullopt;
  Number number = 0;
  for (const char digit : text) {
    const int value = hexDigit(static_cast<unsigned char>(digit));
    if (value < 0) return std::nullopt;
    number = static_cast<Number>(number << 4 | static_cast<Number>(value));
  }
  return number;
}

/// The octets of a text that is nothing but pairs of digits, in either case; none for any other text.
inline std::optional<Bytes> bytesFromHex(std::u16string_view text) {
  if (text.size() % 2 != 0) return std::nullopt;
  Bytes bytes;
  bytes.reserve(text.size() / 2);
  for (std::size_t i = 0; i < text.size(); i += 2) {
    const int octet = hexOctet(text[i], text[i + 1]);
    if (octet < 0) return std::nullopt;
    bytes.push_back(static_cast<uint8>(octet));
  }
  return bytes;
}

}  // namespace Vantor::Platform
