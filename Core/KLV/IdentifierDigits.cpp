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

bool isSeparator(char character) { return std::string_view(".- :_,").find(character) != std::string_view::npos; }

/// The number of characters between two digits; none where they cannot stand there. Groups may have a "0x" each.
std::optional<std::size_t> separatorAt(std::string_view text) {
  std::size_t size = isSeparator(text.front()) ? 1 : 0;
  if (size == 0) return std::nullopt;
  const bool isComma = text.front() == ',';
  while (size < text.size() && text[size] == ' ' && (isComma || text[0] == ' ')) ++size;
  return size + (beginsWith(text.substr(size), "0x") ? 2 : 0);
}

}  // namespace

std::optional<std::string> identifierDigits(std::string_view text, std::size_t most) {
  text = withoutPrefix(withoutBraces(text));
  std::string digits;
  while (!text.empty()) {
    if (Platform::hexDigit(static_cast<unsigned char>(text.front())) >= 0) {
      digits += upperCase(text.front());
      text.remove_prefix(1);
    } else {
      const auto separator = digits.empty() ? std::nullopt : separatorAt(text);
      const bool isDoubled = separator && *separator < text.size() && isSeparator(text[*separator]);
      if (!separator || isDoubled) return std::nullopt;
      text.remove_prefix(*separator);
    }
    if (digits.size() > most) return std::nullopt;
  }
  return digits.empty() ? std::nullopt : std::optional(digits);
}

}  // namespace Vantor::KLV
