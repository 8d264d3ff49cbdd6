#pragma once

#include <string_view>

#include "Core/Dictionary/Definitions.h"

namespace Vantor {

/// Adds the definitions of one source to `Definitions`; one object per source.
///
/// Checks keys, names, numbers and tags; references to other definitions wait for `Definitions::check`. The texts of a
/// definition have to live as long as the `Definitions`: see `Definitions::keep`. What another source has defined in
/// the same way may be added once more. Every member function throws Exceptions::InvalidFormat "FILE:LINE: what; what
/// to do" for a definition that is wrong.
class DefinitionAdder {
 public:
  DefinitionAdder(Definitions& definitions, Definitions::Overlay overlay);

  /// Enters a namespace of the source's own for definitions, or finds it.
  /// @return its place in `Definitions::namespaces()`.
  uint32 addNamespace(std::string_view prefix, std::string_view uri, const Origin& origin);
  /// `addProperty` adds its properties.
  /// @return its place in `Definitions::sets()`.
  uint32 addSet(SetDefinition set);
  /// Adds a property to a set. If another set has it already, both definitions have to agree.
  /// @param use  without `property`, which this function fills in.
  void addProperty(uint32 set, PropertyDefinition property, PropertyUse use);
  /// `addValue` adds its values.
  /// @return its place in `Definitions::enumerations()`.
  uint32 addEnumeration(EnumerationDefinition enumeration);
  /// @param digits  the number in decimal.
  void addValue(uint32 enumeration, std::string_view digits, std::string_view name, const Origin& origin);
  void addLabel(const LabelDefinition& label);
  /// @param common  of a set and a property that are defined already.
  void addCommonName(const CommonNameDefinition& common);
  /// Ends the source: replaced definitions take effect everywhere, and symbols are checked once more.
  void finish();

  /// Refuses a word that is no name.
  /// @param what  the name is to be, such as "a symbol".
  void checkName(std::string_view word, const char* what, const Origin& origin) const;

 private:
  static bool isRepeated(const SetDefinition& known, const SetDefinition& here);
  uint32 placeOf(PropertyDefinition property);
  void checkAgreement(const PropertyDefinition& known, const PropertyDefinition& here) const;
  void checkSymbols() const;
  void replaceRenewedProperties();
  /// Whether a definition is of an earlier source and may give way to one of this source; it may once.
  bool mayReplace(const Templates::vector<bool>& earlier, uint32 place) const;

  Definitions& to_;
  Templates::vector<bool> earlierSets_;  // beside the definitions of earlier sources; empty where none gives way
  Templates::vector<bool> earlierProperties_;
  Templates::vector<bool> earlierEnumerations_;
  Templates::vector<bool> earlierLabels_;
};

}  // namespace Vantor
