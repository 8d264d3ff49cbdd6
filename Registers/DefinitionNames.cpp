#include "Registers/DefinitionNames.h"

#include <algorithm>

#include "Core/Dictionary/CharacterClass.h"
#include "Core/Platform/HexDigits.h"

namespace Vantor::Registers {

namespace {

constexpr std::size_t kMostCharacters = 100;

bool isNameCharacter(char c) { return CharacterClass::is(c, CharacterClass::kName); }

/// Documents use names with '_REF' for references.
void replaceReserved(std::string& name) {
  for (auto at = name.find("_REF"); at != std::string::npos; at = name.find("_REF", at)) name[at] = '-';
}

}  // namespace

std::string nameOfLetters(std::string_view text) {
  if (std::none_of(text.begin(), text.end(), isNameCharacter)) return {};
  std::string name(text.substr(0, kMostCharacters));
  std::replace_if(
      name.begin(), name.end(), [](char c) { return !isNameCharacter(c); }, '_');
  if (!CharacterClass::is(name.front(), CharacterClass::kNameStart)) name.insert(0, 1, '_');
  replaceReserved(name);
  return name;
}

std::string DefinitionNames::take(std::string_view wanted, std::string_view kind, const KLV::Key& key) {
  auto name = nameOfLetters(wanted);
  if (name.empty()) name = kind;
  const auto digits = Platform::hexText<std::string>(key.rawBuffer(), KLV::Key::kSize, Platform::DigitCase::kLower);
  std::string free = name;
  if (!isFree(free)) free = name + "_" + digits.substr(0, 8);
  if (!isFree(free)) free = name + "_" + digits;
  if (!isFree(free)) {
    auto& number = numbers_.emplace(free, 1).first->second;
    const auto start = free + "_";
    while (!isFree(free)) free = start + std::to_string(++number);
  }
  taken_.insert(free);
  return free;
}

}  // namespace Vantor::Registers
