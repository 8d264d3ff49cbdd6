#include "Definitions/DictionaryEntries.h"

#include <algorithm>
#include <set>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/KLV/IdentifierDigits.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Core/Platform/HexDigits.h"

namespace Vantor::Tool {

namespace {

const LabelDefinition* findLabel(const Definitions& definitions, std::string_view symbol) {
  const auto* label = definitions.findLabel(symbol);
  return label != nullptr ? label : builtInLabels().findLabel(symbol);
}

using Entries = std::vector<DictionaryEntry>;

void findByKey(const Definitions& definitions, const KLV::Key& key, Entries& found) {
  const Types::UniversalLabel label(key);
  if (const auto* set = definitions.findSet(key)) found.emplace_back(set);
  if (const auto* property = definitions.findProperty(label)) found.emplace_back(property);
  if (const auto* known = Tool::findLabel(definitions, label)) found.emplace_back(known);
}

/// What a common name stands for.
struct CommonlyNamed {
  CommonlyNamed(const Definitions& definitions, std::string_view name) {
    for (const auto& common : definitions.commonNames()) {
      if (common.name == name && common.property) properties.insert(&definitions.properties()[*common.property]);
      if (common.name == name && !common.property) sets.insert(&definitions.sets()[common.set]);
    }
  }
  std::set<const SetDefinition*> sets;
  std::set<const PropertyDefinition*> properties;
};

void findByName(const Definitions& definitions, std::string_view name, Entries& found) {
  const CommonlyNamed named(definitions, name);
  for (const auto& set : definitions.sets()) {
    const bool isNamed = set.symbol == name || set.tagName == name || named.sets.count(&set) != 0;
    if (isNamed) found.emplace_back(&set);
  }
  for (const auto& property : definitions.properties()) {
    const bool isNamed = property.symbol == name || property.tagName == name || named.properties.count(&property) != 0;
    if (isNamed) found.emplace_back(&property);
  }
  if (const auto* enumeration = definitions.findEnumeration(name)) found.emplace_back(enumeration);
  if (const auto* label = findLabel(definitions, name)) found.emplace_back(label);
}

void findByTag(const Definitions& definitions, uint16 tag, Entries& found) {
  std::set<uint32> properties;
  for (const auto& set : definitions.sets()) {
    for (const auto& use : set.properties) {
      if (use.staticLocalTag == tag) properties.insert(use.property);
    }
  }
  for (const uint32 place : properties) found.emplace_back(&definitions.properties()[place]);
}

void addProperties(const Definitions& definitions, const SetDefinition& set, std::set<uint32>& listed,
                   std::vector<ListedProperty>& properties) {
  const auto* parent = set.parent.empty() ? nullptr : definitions.findSet(set.parent);
  if (parent != nullptr) addProperties(definitions, *parent, listed, properties);
  for (const auto& use : set.properties) {
    if (listed.insert(use.property).second) properties.push_back({&set, &use});
  }
}

}  // namespace

std::string withoutPrefix(const std::string& name) {
  const auto colon = name.find(':');
  return colon == std::string::npos ? name : name.substr(colon + 1);
}

Entries entriesOf(const Definitions& definitions, const std::string& asked) {
  Entries found;
  const auto digits = KLV::identifierDigits(asked).value_or("");
  if (const auto key = MetaMetadata::parseRegisterKey(digits)) {
    findByKey(definitions, *key, found);
    return found;
  }
  findByName(definitions, withoutPrefix(asked), found);
  const uint16 tag = Platform::numberFromHex<uint16>(digits).value_or(0);
  if (tag != 0) findByTag(definitions, tag, found);
  return found;
}

const LabelDefinition* findLabel(const Definitions& definitions, const Types::UniversalLabel& key) {
  const auto* label = definitions.findLabel(key);
  return label != nullptr ? label : builtInLabels().findLabel(key);
}

std::vector<ListedProperty> propertiesOf(const Definitions& definitions, const SetDefinition& set) {
  std::set<uint32> listed;
  std::vector<ListedProperty> properties;
  addProperties(definitions, set, listed, properties);
  return properties;
}

PropertyNames commonNamesIn(const Definitions& definitions, const SetDefinition& set) {
  std::set<const SetDefinition*> line;
  for (const auto* at = &set; at != nullptr; at = definitions.findSet(at->parent)) line.insert(at);
  PropertyNames names;
  for (const auto& common : definitions.commonNames()) {
    if (!common.property || line.count(&definitions.sets()[common.set]) == 0) continue;
    const auto& property = definitions.properties()[*common.property];
    if (common.name != property.symbol && common.name != property.tagName) names.emplace(*common.property, common.name);
  }
  return names;
}

std::string commonNameOf(const Definitions& definitions, const SetDefinition& set) {
  for (const auto& common : definitions.commonNames()) {
    if (!common.property && &definitions.sets()[common.set] == &set) return std::string(common.name);
  }
  return "";
}

std::vector<PropertyName> commonNamesOf(const Definitions& definitions, const PropertyDefinition& property) {
  std::vector<PropertyName> names;
  const auto place = placeOf(definitions, property);
  for (const auto& common : definitions.commonNames()) {
    if (common.property == place) names.push_back({common.name, &definitions.sets()[common.set]});
  }
  return names;
}

std::string statusName(uint32 status) {
  std::string name(kRequiredStatuses.at(status));
  std::replace(name.begin(), name.end(), '-', ' ');
  return name;
}

uint32 placeOf(const Definitions& definitions, const PropertyDefinition& property) {
  return static_cast<uint32>(&property - definitions.properties().data());
}

}  // namespace Vantor::Tool
