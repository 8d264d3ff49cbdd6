#pragma once

#include <optional>
#include <unordered_map>

#include "Core/Dictionary/Definitions.h"
#include "Registers/DefinitionNames.h"
#include "Registers/FileDefinitions.h"
#include "Registers/Identifications.h"
#include "Registers/MetaDictionary.h"

namespace Vantor::Registers {

/// The sets of definitions and the classes of a file that will join them. A set has a place in `Definitions::sets()`;
/// those of the file come behind, in their order.
class FileClasses {
 public:
  /// @param into  keeps the names, and otherwise stays as it is for as long as this object is asked.
  FileClasses(const MetaDictionary& file, const Identifications& identifications, Definitions& into,
              Templates::vector<DefinitionProblem>& problems);

  /// The sets that only the file has, without properties, source and namespace. `Origin::line` is the number of the set
  /// in the file.
  const Templates::vector<SetDefinition>& added() const { return added_; }
  /// `kChainEnd` when neither has such a set.
  uint32 placeOf(const KLV::Key& reference) const;
  /// The set of a class of the file; `kChainEnd` when that is left out.
  uint32 placeOfClass(uint32 number) const { return places_[number]; }
  std::string_view symbolOf(uint32 place) const { return setAt(place).symbol; }
  /// `kChainEnd` for a root.
  uint32 parentOf(uint32 place) const { return parents_[place]; }
  /// Whether weak references to the set hold its identification.
  bool isDefinition(uint32 place) const;
  /// Whether all sets together have more properties than fit into a dictionary, if each class gets all that it lists.
  bool hasTooManyProperties() const;

 private:
  void add(const FileClass& one, uint32 number);
  std::optional<KLV::Key> keyOf(const FileClass& one);
  void nameAdded();
  void findParents();
  uint32 parentOf(const FileClass& one, uint32 place);
  const SetDefinition& setAt(uint32 place) const;
  void problem(DefinitionProblem::Kind kind, const FileClass& one, std::string detail = {});

  const MetaDictionary& file_;
  const Identifications& identifications_;
  Definitions& into_;
  Templates::vector<DefinitionProblem>& problems_;
  Templates::vector<SetDefinition> added_;
  Templates::vector<uint32> places_;   // by the number of the class
  Templates::vector<uint32> numbers_;  // of the classes, beside those added
  std::unordered_map<KLV::Key, uint32, KLV::KeyHash> addedByKey_;
  Templates::vector<uint32> parents_;  // by place
  uint32 root_;                        // InterchangeObject
};

}  // namespace Vantor::Registers
