#pragma once

#include "Core/Dictionary/Definitions.h"

namespace Vantor {

/// Checks of `Definitions` that need all of them.
class DefinitionCheck {
 public:
  explicit DefinitionCheck(Definitions& definitions) : of_(definitions) {}

  /// Completes the types of properties whose enumerations were read after them.
  /// @throws Exceptions::InvalidFormat for the first thing that is wrong.
  void run();

 private:
  void checkEnumerations() const;
  void completeTypes() const;
  void checkTarget(const PropertyDefinition& property) const;
  void findParents();
  void checkCircles() const;
  /// Refuses what would make a dictionary too large for memory.
  void checkExtent() const;
  void checkPropertiesOf(uint32 set) const;
  void checkRepetition(uint32 set, const PropertyUse& use, const PropertyUse& other, bool isInOneSet) const;
  [[noreturn]] void refuseTag(uint32 set, const PropertyUse& use, const PropertyUse& other) const;
  void checkSetNames() const;
  void checkPropertyNames(MetaMetadata::Vocabulary vocabulary) const;

  Definitions& of_;
  Templates::vector<uint32> parents_;  // beside the sets: the places of their parents
};

}  // namespace Vantor
