#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "Core/KLV/Key.h"

namespace Vantor::Registers {

/// Makes names of definitions from names of any characters: of letters, digits, '-', '.' and '_', as dictionaries and
/// XML want them, up to 100 of them, and each once. The names do not depend on the order of the definitions.
///
/// A name that one definition wants, and that is free, stays as it is. All definitions that want one name, or one that
/// is taken, get the first digits of their keys behind it: eight, or as many as make these names unique.
class DefinitionNames {
 public:
  void add(std::string_view taken) { taken_.emplace(taken); }

  /// Enters a definition.
  /// @param kind     the name of a definition whose name has no character for one.
  /// @param digits   distinguish it from all others: those of its key.
  /// @param isTaken  whether the name is not free for this definition.
  void want(std::string_view wanted, std::string_view kind, std::string digits, bool isTaken = false);
  void want(std::string_view wanted, std::string_view kind, const KLV::Key& key, bool isTaken = false);

  /// The names of all definitions, in the order in which they were entered. Takes them.
  std::vector<std::string> take();

 private:
  struct Group {
    std::set<std::pair<std::string, std::size_t>> members;  // their digits, and their places in the order of `want`
    bool isTaken = false;
  };
  using Names = std::vector<std::string>;

  bool isFree(const std::string& name) const { return taken_.count(name) == 0 && groups_.count(name) == 0; }
  bool nameShortly(const std::string& base, const Group& group, std::size_t digits, Names& names);
  void nameByNumbers(const std::string& base, const Group& group, Names& names);
  void nameGroup(const std::string& base, const Group& group, Names& names);

  std::unordered_set<std::string> taken_;
  std::map<std::string, Group> groups_;  // by the wanted name
  std::size_t count_ = 0;
};

/// The characters of a name that may stand in one, '_' for the others; up to 100 of them. Empty when there are none but
/// others. Begins as a name does, and has no '_REF', which documents have for references.
std::string nameOfLetters(std::string_view text);

}  // namespace Vantor::Registers
