#include "DictionaryText.h"

#include <algorithm>
#include <set>
#include <string_view>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/Dictionary/PropertyTypeText.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Core/Platform/HexDigits.h"
#include "TextTable.h"

namespace Vantor::Tool {

namespace {

using Align = TextTable::Align;
using MetaMetadata::registerText;
using MetaMetadata::Vocabulary;

/// ST 377-1, by `MetaAttribute::requiredStatus`.
std::string statusName(uint32 status) {
  std::string name(kRequiredStatuses.at(status));
  std::replace(name.begin(), name.end(), '-', ' ');
  return name;
}

/// As documents of a vocabulary have it.
template <class Definition>
std::string qualifiedName(const Definitions& definitions, const Definition& definition,
                          const MetaMetadata::Namespace& builtIn) {
  const auto& chosen = definitions.namespaces()[definition.chosenNamespace];
  const bool isBuiltIn = definition.chosenNamespace == 0;
  return (isBuiltIn ? std::string(builtIn.prefix.begin(), builtIn.prefix.end()) : std::string(chosen.prefix)) + ":" +
         std::string(definition.tagName);
}
std::string nameIn(Vocabulary vocabulary, const Definitions& definitions, const PropertyDefinition& property) {
  const wstring name(property.tagName.begin(), property.tagName.end());
  return qualifiedName(definitions, property, MetaMetadata::elementNamespace(vocabulary, name));
}
std::string nameIn(Vocabulary vocabulary, const Definitions& definitions, const SetDefinition& set) {
  return qualifiedName(definitions, set, MetaMetadata::setNamespace(vocabulary));
}

template <class Definition>
void addNames(const Definitions& definitions, const Definition& definition, TextTable& facts) {
  facts.addRow({"XML, legacy", nameIn(Vocabulary::kLegacy, definitions, definition)});
  facts.addRow({"XML, st434-2014", nameIn(Vocabulary::kST434_2014, definitions, definition)});
}

/// What the notation of a type does not show: the core type of an enumeration.
std::string typeText(const PropertyType& type) {
  std::string text = textOf(type);
  if (!type.enumeration.empty()) text += " (" + std::string(Types::Identifiers::name(type.value)) + ")";
  return text;
}

std::string entryText(const EnumerationDefinition& enumeration) {
  TextTable table({Align::kRight, Align::kLeft});
  for (const auto& value : enumeration.values) {
    table.addRow({std::to_string(value.number), std::string(value.name)});
  }
  return "enumeration " + std::string(enumeration.name) + " of " + Types::Identifiers::name(enumeration.base) + "\n" +
         table.text();
}

std::string entryText(const LabelDefinition& label) {
  TextTable table(2);
  table.addRow({"key", registerText(label.key.key())});
  table.addRow({"name", std::string(label.name)});
  return "label " + std::string(label.symbol) + "\n" + table.text();
}

void addProperties(const Definitions& definitions, const SetDefinition& set, TextTable& table,
                   std::set<uint32>& listed) {
  const auto* parent = set.parent.empty() ? nullptr : definitions.findSet(set.parent);
  if (parent != nullptr) addProperties(definitions, *parent, table, listed);
  for (const auto& use : set.properties) {
    if (!listed.insert(use.property).second) continue;
    const auto& property = definitions.properties()[use.property];
    table.addRow({tagText(use.staticLocalTag), nameIn(Vocabulary::kLegacy, definitions, property),
                  nameIn(Vocabulary::kST434_2014, definitions, property), typeText(property.type),
                  statusName(use.requiredStatus), std::string(set.symbol)});
  }
}

std::string entryText(const Definitions& definitions, const SetDefinition& set) {
  TextTable facts(2);
  facts.addRow({"key", registerText(set.key)});
  facts.addRow({"parent", set.parent.empty() ? "none" : std::string(set.parent)});
  facts.addRow({"in files", set.isConcrete ? "yes" : "no, only sets that inherit from it"});
  addNames(definitions, set, facts);
  TextTable table(6);
  table.addRow({"tag", "legacy", "st434-2014", "type", "status", "of"});
  std::set<uint32> listed;
  addProperties(definitions, set, table, listed);
  return "set " + std::string(set.symbol) + "\n" + facts.text() + "\nproperties: " + std::to_string(listed.size()) +
         "\n" + (listed.empty() ? "" : table.text());
}

std::string entryText(const Definitions& definitions, const PropertyDefinition& property) {
  const auto place = static_cast<uint32>(&property - definitions.properties().data());
  TextTable facts(2);
  facts.addRow({"key", registerText(property.key.key())});
  facts.addRow({"type", typeText(property.type)});
  addNames(definitions, property, facts);
  TextTable uses(3);
  uses.addRow({"tag", "status", "in set"});
  for (const auto& set : definitions.sets()) {
    for (const auto& use : set.properties) {
      if (use.property != place) continue;
      uses.addRow({tagText(use.staticLocalTag), statusName(use.requiredStatus), std::string(set.symbol)});
    }
  }
  const auto* enumeration = definitions.findEnumeration(property.type.enumeration);
  return "property " + std::string(property.symbol) + "\n" + facts.text() + uses.text() +
         (enumeration == nullptr ? "" : "\n" + entryText(*enumeration));
}

/// A name without the prefix that documents have, or a tag without the "0x" of programmers.
std::string withoutPrefix(const std::string& text) {
  if (MetaMetadata::parseRegisterKey(text)) return text;
  const auto colon = text.find(':');
  if (colon != std::string::npos) return text.substr(colon + 1);
  return text.rfind("0x", 0) == 0 ? text.substr(2) : text;
}

/// Descriptions of what was found, an empty row between any two.
void add(const std::string& description, std::string& found) { found += (found.empty() ? "" : "\n") + description; }

const LabelDefinition* findLabel(const Definitions& definitions, const Types::UniversalLabel& key) {
  const auto* label = definitions.findLabel(key);
  return label != nullptr ? label : builtInLabels().findLabel(key);
}
const LabelDefinition* findLabel(const Definitions& definitions, std::string_view symbol) {
  const auto* label = definitions.findLabel(symbol);
  return label != nullptr ? label : builtInLabels().findLabel(symbol);
}

void findByKey(const Definitions& definitions, const KLV::Key& key, std::string& found) {
  const Types::UniversalLabel label(key);
  if (const auto* set = definitions.findSet(key)) add(entryText(definitions, *set), found);
  if (const auto* property = definitions.findProperty(label)) add(entryText(definitions, *property), found);
  if (const auto* known = findLabel(definitions, label)) add(entryText(*known), found);
}

void findByName(const Definitions& definitions, std::string_view name, std::string& found) {
  for (const auto& set : definitions.sets()) {
    if (set.symbol == name || set.tagName == name) add(entryText(definitions, set), found);
  }
  for (const auto& property : definitions.properties()) {
    if (property.symbol == name || property.tagName == name) add(entryText(definitions, property), found);
  }
  if (const auto* enumeration = definitions.findEnumeration(name)) add(entryText(*enumeration), found);
  if (const auto* label = findLabel(definitions, name)) add(entryText(*label), found);
}

void findByTag(const Definitions& definitions, uint16 tag, std::string& found) {
  std::set<uint32> properties;
  for (const auto& set : definitions.sets()) {
    for (const auto& use : set.properties) {
      if (use.staticLocalTag == tag) properties.insert(use.property);
    }
  }
  for (const uint32 place : properties) add(entryText(definitions, definitions.properties()[place]), found);
}

bool isSameButForCase(std::string_view left, std::string_view right) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 'a' - 'A') : c; };
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [&](char a, char b) { return lower(a) == lower(b); });
}

}  // namespace

std::string listOfSets(const Definitions& definitions) {
  TextTable table(4);
  table.addRow({"set", "key", "parent", "in files"});
  for (const auto& set : definitions.sets()) {
    table.addRow({std::string(set.symbol), registerText(set.key), set.parent.empty() ? "-" : std::string(set.parent),
                  set.isConcrete ? "yes" : "no"});
  }
  return "sets: " + std::to_string(definitions.sets().size()) + "\n" + table.text();
}

std::string descriptionOf(const Definitions& definitions, const std::string& asked) {
  std::string found;
  const std::string wanted = withoutPrefix(asked);
  if (const auto key = MetaMetadata::parseRegisterKey(wanted)) {
    findByKey(definitions, *key, found);
    return found;
  }
  findByName(definitions, wanted, found);
  const uint16 tag = Platform::numberFromHex<uint16>(wanted).value_or(0);
  if (tag != 0) findByTag(definitions, tag, found);
  return found;
}

std::string similarNames(const Definitions& definitions, const std::string& wanted) {
  std::set<std::string_view> names;
  const auto take = [&](std::string_view name) {
    if (isSameButForCase(name, wanted)) names.insert(name);
  };
  for (const auto& set : definitions.sets()) take(set.symbol), take(set.tagName);
  for (const auto& property : definitions.properties()) take(property.symbol), take(property.tagName);
  for (const auto& enumeration : definitions.enumerations()) take(enumeration.name);
  for (const auto& label : definitions.labels()) take(label.symbol);
  for (const auto& label : builtInLabels().labels()) take(label.symbol);
  std::string text;
  for (const auto name : names) text += (text.empty() ? "" : ", ") + std::string(name);
  return text;
}

std::string labelName(const Definitions& definitions, const Types::UniversalLabel& label) {
  const auto* known = findLabel(definitions, label);
  return known == nullptr ? "" : std::string(known->name);
}

}  // namespace Vantor::Tool
