#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace Vantor::MetaMetadata {

constexpr bool isUpperCaseLetter(char character) { return character >= 'A' && character <= 'Z'; }
constexpr bool isLowerCaseLetter(char character) { return character >= 'a' && character <= 'z'; }
constexpr bool isDigit(char character) { return character >= '0' && character <= '9'; }
/// Whether the character is part of a name: ASCII letters and digits, and everything beyond ASCII.
constexpr bool isNameCharacter(char character) {
  return isUpperCaseLetter(character) || isLowerCaseLetter(character) || isDigit(character) ||
         static_cast<unsigned char>(character) >= 0x80;
}

/// A name without punctuation and white space, its ASCII letters in lower case: "BT.709" is "bt709".
inline std::string foldedName(std::string_view name) {
  std::string folded;
  for (const char character : name) {
    if (!isNameCharacter(character)) continue;
    folded += isUpperCaseLetter(character) ? static_cast<char>(character + ('a' - 'A')) : character;
  }
  return folded;
}

}  // namespace Vantor::MetaMetadata
