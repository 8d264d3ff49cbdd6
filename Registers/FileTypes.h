#pragma once

#include <map>
#include <optional>
#include <unordered_map>

#include "Registers/FileDefinitions.h"
#include "Registers/MetaDictionary.h"
#include "Registers/RegisterTypes.h"

namespace Vantor::Registers {

/// The types of a file and those of the registers. Where both define one, that of the registers counts.
class FileTypes {
 public:
  /// @param dictionary  stays where it is for as long as this object lives.
  FileTypes(const MetaDictionary& dictionary, Templates::vector<DefinitionProblem>& problems);

  FileTypes(const FileTypes&) = delete;
  FileTypes& operator=(const FileTypes&) = delete;

  /// The core types of a type that the file refers to; bytes when it is unknown.
  RegisteredType find(const std::optional<KLV::Key>& reference) const;
  /// The file's definition of the enumeration that a type has; null for one of the registers.
  const FileType* ownEnumeration(const RegisteredType& type) const;
  /// The types of the file that the registers lack.
  std::size_t countOfOwn() const { return own_.size(); }

 private:
  void addOwn();
  void refer(TypeEntry& type, const FileType& own);
  void referToCharacter(TypeEntry& string);
  /// So that `RegisterTypes` comes to an end.
  void cutCircles();
  void carryAsBytes(TypeEntry& type, DefinitionProblem::Kind why);
  uint32 placeOf(const KLV::Key& key) const;
  const TypeEntry* entryOf(const KLV::Key& reference) const;

  const MetaDictionary& dictionary_;
  Templates::vector<DefinitionProblem>& problems_;
  Entries entries_;
  std::unordered_map<KLV::Key, uint32, KLV::KeyHash> places_;  // in the entries, by what counts of the key
  std::map<uint32, uint32> own_;                               // places in the file's types, by those in the entries
  std::optional<RegisterTypes> types_;
};

}  // namespace Vantor::Registers
