#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "Core/KLV/Key.h"

namespace Vantor::Registers {

/// Makes names of definitions from names of any characters: of letters, digits, '-', '.' and '_', as dictionaries and
/// XML want them, up to 100 of them, and each once.
class DefinitionNames {
 public:
  void add(std::string_view taken) { taken_.emplace(taken); }

  /// The name itself where that may be and is free; else with '_' for every other character, and with the first digits
  /// of the key behind it, all of them or a number, until it is free. Takes it.
  /// @param kind  the name of a definition that has none.
  std::string take(std::string_view wanted, std::string_view kind, const KLV::Key& key);

 private:
  bool isFree(const std::string& name) const { return taken_.count(name) == 0; }

  std::unordered_set<std::string> taken_;
  std::unordered_map<std::string, std::size_t> numbers_;  // the last one behind a name with its key
};

/// The characters of a name that may stand in one, '_' for the others. Empty when there are none but others.
std::string nameOfLetters(std::string_view text);

}  // namespace Vantor::Registers
