#include "Registers/DefinitionNames.h"

#include <algorithm>
#include <utility>

#include "Core/Dictionary/CharacterClass.h"
#include "Core/Platform/HexDigits.h"

namespace Vantor::Registers {

namespace {

constexpr std::size_t kMostCharacters = 100;
constexpr std::size_t kFewestDigits = 8, kMostDigits = 2 * KLV::Key::kSize;

bool isNameCharacter(char c) { return CharacterClass::is(c, CharacterClass::kName); }

void replaceReserved(std::string& name) {
  for (auto at = name.find("_REF"); at != std::string::npos; at = name.find("_REF", at)) name[at] = '-';
}

}  // namespace

std::string nameOfLetters(std::string_view text) {
  if (std::none_of(text.begin(), text.end(), isNameCharacter)) return {};
  std::string name(text.substr(0, kMostCharacters));
  std::replace_if(
      name.begin(), name.end(), [](char c) { return !isNameCharacter(c); }, '_');
  replaceReserved(name);
  if (!CharacterClass::is(name.front(), CharacterClass::kNameStart)) name.insert(0, 1, '_');
  return name;
}

void DefinitionNames::want(std::string_view wanted, std::string_view kind, std::string digits, bool isTaken) {
  auto name = nameOfLetters(wanted);
  if (name.empty()) name = kind;
  auto& group = groups_[name];
  group.members.emplace(std::move(digits), count_++);
  group.isTaken = group.isTaken || isTaken;
}

void DefinitionNames::want(std::string_view wanted, std::string_view kind, const KLV::Key& key, bool isTaken) {
  auto digits = Platform::hexText<std::string>(key.rawBuffer(), KLV::Key::kSize, Platform::DigitCase::kLower);
  want(wanted, kind, std::move(digits), isTaken);
}

DefinitionNames::Names DefinitionNames::take() {
  Names names(count_);
  for (const auto& [base, group] : groups_) nameGroup(base, group, names);
  groups_.clear();
  count_ = 0;
  return names;
}

void DefinitionNames::nameGroup(const std::string& base, const Group& group, Names& names) {
  const bool isOne = group.members.size() == 1 && !group.isTaken && taken_.count(base) == 0;
  if (isOne) {
    names[group.members.begin()->second] = base;
    taken_.insert(base);
    return;
  }
  for (auto digits = kFewestDigits; digits <= kMostDigits; ++digits) {
    if (nameShortly(base, group, digits, names)) return;
  }
  nameByNumbers(base, group, names);
}

bool DefinitionNames::nameShortly(const std::string& base, const Group& group, std::size_t digits, Names& names) {
  std::unordered_set<std::string> found;
  for (const auto& [key, place] : group.members) {
    names[place] = base + "_" + key.substr(0, digits);
    if (!isFree(names[place]) || !found.insert(names[place]).second) return false;
  }
  taken_.insert(found.begin(), found.end());
  return true;
}

void DefinitionNames::nameByNumbers(const std::string& base, const Group& group, Names& names) {
  for (const auto& [key, place] : group.members) {
    const auto start = base + "_" + key;
    auto& name = names[place] = start;
    for (std::size_t number = 2; !isFree(name); ++number) name = start + "_" + std::to_string(number);
    taken_.insert(name);
  }
}

}  // namespace Vantor::Registers
