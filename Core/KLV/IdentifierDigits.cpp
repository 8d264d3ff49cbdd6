#include "Core/KLV/IdentifierDigits.h"

#include <algorithm>

#include "Core/Platform/HexDigits.h"

namespace Vantor::KLV {

namespace {

constexpr std::string_view kPrefixes[] = {"urn:uuid:", "urn:smpte:ul:", "urn:smpte:umid:", "0x"};

char upperCase(char character) {
  return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}

bool beginsWith(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() && std::equal(prefix.begin(), prefix.end(), text.begin(),
                                                    [](char a, char b) { return upperCase(a) == upperCase(b); });
}

/// A beginning may lack the closing brace, but there is none without the opening one.
std::string_view withoutBraces(std::string_view text) {
  if (text.empty() || text.front() != '{') return text;
  text.remove_prefix(1);
  if (!text.empty() && text.back() == '}') text.remove_suffix(1);
  return text;
}

std::string_view withoutPrefix(std::string_view text) {
  for (const auto prefix : kPrefixes) {
    if (beginsWith(text, prefix)) return text.substr(prefix.size());
  }
  return text;
}

bool isSeparator(char character) { return character == '.' || character == '-' || character == ' '; }

}  // namespace

std::optional<std::string> identifierDigits(std::string_view text, std::size_t most) {
  text = withoutPrefix(withoutBraces(text));
  std::string digits;
  bool isBehindDigit = false;
  for (const char character : text) {
    const bool isDigit = Platform::hexDigit(static_cast<unsigned char>(character)) >= 0;
    if (!isDigit && !(isBehindDigit && isSeparator(character))) return std::nullopt;
    if (isDigit) digits += upperCase(character);
    if (digits.size() > most) return std::nullopt;
    isBehindDigit = isDigit;
  }
  return digits.empty() ? std::nullopt : std::optional(digits);
}

}  // namespace Vantor::KLV
