#include "Definitions/DictionaryText.h"

#include <map>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/Dictionary/PropertyTypeText.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Core/Metadata/LabelKinds.h"
#include "Registers/Descriptions.h"
#include "Terminal/TextTable.h"

namespace Vantor::Tool {

namespace {

using Align = TextTable::Align;
using MetaMetadata::registerText;
using MetaMetadata::Vocabulary;

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

/// @param chosen      from the registers that the user gave.
/// @param registered  from those that the library was made with.
void addExplanation(const Explanation& chosen, const Explanation& registered, TextTable& facts) {
  const auto& explanation = chosen.definition.empty() && chosen.document.empty() ? registered : chosen;
  if (!explanation.definition.empty()) facts.addRow({"definition", std::string(explanation.definition)});
  if (!explanation.document.empty()) facts.addRow({"document", std::string(explanation.document)});
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
  TextTable facts(2);
  addExplanation({}, Registers::registeredExplanation(enumeration.name), facts);
  return "enumeration " + std::string(enumeration.name) + " of " + Types::Identifiers::name(enumeration.base) + "\n" +
         facts.text() + table.text();
}

std::string entryText(const LabelDefinition& label) {
  TextTable table(2);
  table.addRow({"key", registerText(label.key.key())});
  table.addRow({"name", std::string(label.name)});
  addExplanation(label.explanation, Registers::registeredExplanation(label.key.key()), table);
  return "label " + std::string(label.symbol) + "\n" + table.text();
}

/// The common names of a property with the sets that they count in.
std::string textOf(const std::vector<PropertyName>& names) {
  std::string text;
  for (const auto& [name, set] : names) {
    text += (text.empty() ? "" : ", ") + std::string(name) + " in " + std::string(set->symbol);
  }
  return text;
}

TextTable::Row rowOf(const Definitions& definitions, const ListedProperty& listed, const PropertyNames& commonNames) {
  const auto& property = definitions.properties()[listed.use->property];
  TextTable::Row row = {tagText(listed.use->staticLocalTag),
                        nameIn(Vocabulary::kLegacy, definitions, property),
                        nameIn(Vocabulary::kST434_2014, definitions, property),
                        typeText(property.type),
                        statusName(listed.use->requiredStatus),
                        std::string(listed.set->symbol)};
  const auto common = commonNames.find(listed.use->property);
  if (common != commonNames.end()) row.emplace_back(common->second);
  return row;
}

std::string entryText(const Definitions& definitions, const SetDefinition& set) {
  TextTable facts(2);
  facts.addRow({"key", registerText(set.key)});
  facts.addRow({"parent", set.parent.empty() ? "none" : std::string(set.parent)});
  facts.addRow({"in files", set.isConcrete ? "yes" : "no, only sets that inherit from it"});
  const auto commonName = commonNameOf(definitions, set);
  if (!commonName.empty()) facts.addRow({"common name", commonName});
  addNames(definitions, set, facts);
  addExplanation(set.explanation, Registers::registeredExplanation(set.key), facts);
  const auto commonNames = commonNamesIn(definitions, set);
  TextTable table(7);
  TextTable::Row heading = {"tag", "legacy", "st434-2014", "type", "status", "of"};
  if (!commonNames.empty()) heading.emplace_back("common name");
  table.addRow(std::move(heading));
  const auto listed = propertiesOf(definitions, set);
  for (const auto& one : listed) table.addRow(rowOf(definitions, one, commonNames));
  return "set " + std::string(set.symbol) + "\n" + facts.text() + "\nproperties: " + std::to_string(listed.size()) +
         "\n" + (listed.empty() ? "" : table.text());
}

bool isLabel(Types::Identifiers::Identifier type) {
  return type == Types::Identifiers::kAUID || type == Types::Identifiers::kUniversalLabel;
}

/// The labels that a property takes, as far as it takes those of one kind: the first ones, and how many there are.
std::string labelsText(const Definitions& definitions, const PropertyDefinition& property) {
  constexpr std::size_t kMostLabels = 12;
  const auto* kind = labelKindOf(property.symbol);
  if (kind == nullptr || !isLabel(property.type.value)) return "";
  TextTable table(2);
  std::size_t count = 0;
  for (const auto* source : {&definitions, &builtInLabels()}) {
    for (const auto& label : source->labels()) {
      if (!isOfKind(kind, label.key) || ++count > kMostLabels) continue;
      table.addRow({std::string(label.symbol), std::string(label.name)});
    }
  }
  if (count == 0) return "";
  const std::string shown = count > kMostLabels ? ", of which the first " + std::to_string(kMostLabels) + " are" : "";
  return "\nlabels: " + std::to_string(count) + shown + "\n" + table.text();
}

std::string entryText(const Definitions& definitions, const PropertyDefinition& property) {
  const auto place = placeOf(definitions, property);
  TextTable facts(2);
  facts.addRow({"key", registerText(property.key.key())});
  facts.addRow({"type", typeText(property.type)});
  const auto commonNames = textOf(commonNamesOf(definitions, property));
  if (!commonNames.empty()) facts.addRow({"common name", commonNames});
  addNames(definitions, property, facts);
  addExplanation(property.explanation, Registers::registeredExplanation(property.key.key()), facts);
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
         (enumeration == nullptr ? labelsText(definitions, property) : "\n" + entryText(*enumeration));
}

std::string entryDescription(const Definitions& definitions, const DictionaryEntry& entry) {
  if (const auto* set = std::get_if<const SetDefinition*>(&entry)) return entryText(definitions, **set);
  if (const auto* property = std::get_if<const PropertyDefinition*>(&entry)) return entryText(definitions, **property);
  if (const auto* label = std::get_if<const LabelDefinition*>(&entry)) return entryText(**label);
  return entryText(*std::get<const EnumerationDefinition*>(entry));
}

}  // namespace

std::string listOfSets(const Definitions& definitions) {
  std::map<uint32, std::string> commonNames;
  for (const auto& common : definitions.commonNames()) {
    if (!common.property) commonNames.emplace(common.set, common.name);
  }
  TextTable table(5);
  table.addRow({"set", "key", "parent", "in files", "common name"});
  for (uint32 place = 0; place < definitions.sets().size(); ++place) {
    const auto& set = definitions.sets()[place];
    TextTable::Row row = {std::string(set.symbol), registerText(set.key),
                          set.parent.empty() ? "-" : std::string(set.parent), set.isConcrete ? "yes" : "no"};
    const auto common = commonNames.find(place);
    if (common != commonNames.end()) row.push_back(common->second);
    table.addRow(std::move(row));
  }
  return "sets: " + std::to_string(definitions.sets().size()) + "\n" + table.text();
}

std::string descriptionOf(const Definitions& definitions, const std::vector<DictionaryEntry>& entries) {
  std::string text;
  for (const auto& entry : entries) text += (text.empty() ? "" : "\n") + entryDescription(definitions, entry);
  return text;
}

std::string descriptionOf(const Definitions& definitions, const std::string& asked) {
  return descriptionOf(definitions, entriesOf(definitions, asked));
}

std::string labelName(const Definitions& definitions, const Types::UniversalLabel& label) {
  const auto* known = findLabel(definitions, label);
  return known == nullptr ? "" : std::string(known->name);
}

}  // namespace Vantor::Tool
