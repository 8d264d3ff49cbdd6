#pragma once

#include <array>

#include "Core/Platform/Types.h"

/// Classes of the characters in dictionary files. A table, because every process looks at 200,000 of them at its start.
namespace Vantor::CharacterClass {

constexpr uint8 kSpace = 1;
constexpr uint8 kNameStart = 2;
constexpr uint8 kName = 4;

constexpr std::array<uint8, 256> makeTable() {
  std::array<uint8, 256> table{};
  for (const char c : {' ', '\t', '\r'}) table[static_cast<uint8>(c)] = kSpace;
  for (int c = 'A'; c <= 'Z'; ++c) table[c] = table[c - 'A' + 'a'] = kNameStart | kName;
  table['_'] = kNameStart | kName;
  for (int c = '0'; c <= '9'; ++c) table[c] = kName;
  table['-'] = table['.'] = kName;
  return table;
}
inline constexpr std::array<uint8, 256> kTable = makeTable();

constexpr bool is(char c, uint8 characterClass) { return (kTable[static_cast<uint8>(c)] & characterClass) != 0; }

}  // namespace Vantor::CharacterClass
