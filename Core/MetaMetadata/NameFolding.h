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

/// Whether a word begins at a place: behind punctuation, at a capital behind a small letter or before one, and where
/// letters and digits meet.
constexpr bool beginsWord(std::string_view name, std::size_t at) {
  if (!isNameCharacter(name[at])) return false;
  if (at == 0 || !isNameCharacter(name[at - 1]) || isDigit(name[at]) != isDigit(name[at - 1])) return true;
  if (!isUpperCaseLetter(name[at])) return false;
  return !isUpperCaseLetter(name[at - 1]) || (at + 1 < name.size() && isLowerCaseLetter(name[at + 1]));
}

/// Whether a name, from one of its words to the end, is a folded text.
inline bool endsWithWords(std::string_view name, std::string_view folded) {
  for (std::size_t at = 0; at < name.size(); ++at) {
    if (beginsWord(name, at) && foldedName(name.substr(at)) == folded) return true;
  }
  return false;
}

}  // namespace Vantor::MetaMetadata
