#pragma once

#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "Core/Dictionary/Definitions.h"

/// What definitions and built-in labels have under a name, a key or a tag.
namespace Vantor::Tool {

using DictionaryEntry =
    std::variant<const SetDefinition*, const PropertyDefinition*, const EnumerationDefinition*, const LabelDefinition*>;

/// A name without the prefix that documents have.
std::string withoutPrefix(const std::string& name);

/// Everything with this symbol, name in XML or common name, this key, or this static local tag.
/// @param asked  a key or a tag in a spelling of `KLV::identifierDigits`, or a name, with or without a prefix.
std::vector<DictionaryEntry> entriesOf(const Definitions& definitions, const std::string& asked);

/// A label of the definitions, or else a built-in one; null when neither has it.
const LabelDefinition* findLabel(const Definitions& definitions, const Types::UniversalLabel& key);

/// A property that a set has, and the set of its line of ancestors that lists it.
struct ListedProperty {
  const SetDefinition* set;
  const PropertyUse* use;
};

/// The properties of a set, inherited ones first.
std::vector<ListedProperty> propertiesOf(const Definitions& definitions, const SetDefinition& set);

/// The common names of the properties of a set, inherited ones included, by the places of the properties.
using PropertyNames = std::map<uint32, std::string_view>;
PropertyNames commonNamesIn(const Definitions& definitions, const SetDefinition& set);

/// Empty when it has none.
std::string commonNameOf(const Definitions& definitions, const SetDefinition& set);

/// A common name of a property, and the set that it counts in.
struct PropertyName {
  std::string_view name;
  const SetDefinition* set;
};
std::vector<PropertyName> commonNamesOf(const Definitions& definitions, const PropertyDefinition& property);

/// How binding a property is for its set (ST 377-1), by `MetaAttribute::requiredStatus`.
std::string statusName(uint32 status);

/// The place of a property in `Definitions::properties()`.
uint32 placeOf(const Definitions& definitions, const PropertyDefinition& property);

}  // namespace Vantor::Tool
