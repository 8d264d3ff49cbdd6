#include "DictionaryText.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <set>
#include <string_view>
#include <vector>

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

std::string asText(std::u16string_view ascii) { return {ascii.begin(), ascii.end()}; }

/// ST 377-1, by `MetaAttribute::requiredStatus`.
std::string statusName(uint32 status) {
  static const std::vector<std::string> names = {"required", "encoder required", "decoder required", "best effort",
                                                 "optional"};
  return names.at(status);
}

std::string tagText(uint16 tag) {
  return tag == 0 ? "-" : Platform::hexNumber<std::string>(tag, Platform::DigitCase::kLower);
}

/// As documents of a vocabulary have it.
std::string qualifiedName(const Definitions& definitions, const PropertyDefinition& property, Vocabulary vocabulary) {
  const wstring name(property.xmlName.begin(), property.xmlName.end());
  const auto& chosen = definitions.namespaces()[property.chosenNamespace];
  const std::string prefix = property.chosenNamespace == 0
                                 ? asText(MetaMetadata::elementNamespace(vocabulary, name).prefix)
                                 : std::string(chosen.prefix);
  return prefix + ":" + std::string(property.xmlName);
}
std::string qualifiedName(const Definitions& definitions, const SetDefinition& set, Vocabulary vocabulary) {
  const auto& chosen = definitions.namespaces()[set.chosenNamespace];
  const std::string prefix =
      set.chosenNamespace == 0 ? asText(MetaMetadata::setNamespace(vocabulary).prefix) : std::string(chosen.prefix);
  return prefix + ":" + std::string(set.xmlName);
}

/// What the notation of a type does not show: the core type of an enumeration.
std::string typeText(const PropertyType& type) {
  std::string text = textOf(type);
  if (!type.enumeration.empty()) text += " (" + std::string(Types::Identifiers::name(type.value)) + ")";
  return text;
}

std::string describe(const EnumerationDefinition& enumeration) {
  TextTable table({Align::kRight, Align::kLeft});
  for (const auto& value : enumeration.values) {
    table.addRow({std::to_string(value.number), std::string(value.name)});
  }
  return "enumeration " + std::string(enumeration.name) + " of " + Types::Identifiers::name(enumeration.base) + "\n" +
         table.text();
}

std::string describe(const LabelDefinition& label) {
  TextTable table({Align::kLeft, Align::kLeft});
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
    table.addRow({tagText(use.staticLocalTag), qualifiedName(definitions, property, Vocabulary::kLegacy),
                  qualifiedName(definitions, property, Vocabulary::kST434_2014), typeText(property.type),
                  statusName(use.requiredStatus), std::string(set.symbol)});
  }
}

std::string describe(const Definitions& definitions, const SetDefinition& set) {
  TextTable facts({Align::kLeft, Align::kLeft});
  facts.addRow({"key", registerText(set.key)});
  facts.addRow({"parent", set.parent.empty() ? "none" : std::string(set.parent)});
  facts.addRow({"in files", set.isConcrete ? "yes" : "no, only sets that inherit from it"});
  facts.addRow({"XML, legacy", qualifiedName(definitions, set, Vocabulary::kLegacy)});
  facts.addRow({"XML, st434-2014", qualifiedName(definitions, set, Vocabulary::kST434_2014)});
  TextTable table(std::vector<Align>(6, Align::kLeft));
  table.addRow({"tag", "legacy", "st434-2014", "type", "status", "of"});
  std::set<uint32> listed;
  addProperties(definitions, set, table, listed);
  return "set " + std::string(set.symbol) + "\n" + facts.text() + "\nproperties: " + std::to_string(listed.size()) +
         "\n" + (listed.empty() ? "" : table.text());
}

std::string describe(const Definitions& definitions, const PropertyDefinition& property) {
  const auto place = static_cast<uint32>(&property - definitions.properties().data());
  TextTable facts({Align::kLeft, Align::kLeft});
  facts.addRow({"key", registerText(property.key.key())});
  facts.addRow({"type", typeText(property.type)});
  facts.addRow({"XML, legacy", qualifiedName(definitions, property, Vocabulary::kLegacy)});
  facts.addRow({"XML, st434-2014", qualifiedName(definitions, property, Vocabulary::kST434_2014)});
  TextTable uses({Align::kLeft, Align::kLeft, Align::kLeft});
  uses.addRow({"tag", "status", "in set"});
  for (const auto& set : definitions.sets()) {
    for (const auto& use : set.properties) {
      if (use.property != place) continue;
      uses.addRow({tagText(use.staticLocalTag), statusName(use.requiredStatus), std::string(set.symbol)});
    }
  }
  const auto* enumeration = definitions.findEnumeration(property.type.enumeration);
  return "property " + std::string(property.symbol) + "\n" + facts.text() + uses.text() +
         (enumeration == nullptr ? "" : "\n" + describe(*enumeration));
}

std::optional<uint16> tagFrom(std::string_view text) {
  uint32 tag = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), tag, 16);
  const bool isTag = text.size() == 4 && error == std::errc() && end == text.data() + text.size() && tag != 0;
  return isTag ? std::optional(static_cast<uint16>(tag)) : std::nullopt;
}

/// A name without the prefix that documents have, or a tag without the "0x" of programmers.
std::string withoutPrefix(const std::string& text) {
  if (MetaMetadata::parseRegisterKey(text)) return text;
  const auto colon = text.find(':');
  if (colon != std::string::npos) return text.substr(colon + 1);
  return text.rfind("0x", 0) == 0 ? text.substr(2) : text;
}

/// Collects descriptions, an empty row between any two.
class Findings {
 public:
  void add(const std::string& description) { text_ += (text_.empty() ? "" : "\n") + description; }
  bool isEmpty() const { return text_.empty(); }
  const std::string& text() const { return text_; }

 private:
  std::string text_;
};

const LabelDefinition* findLabel(const Definitions& definitions, const Types::UniversalLabel& key) {
  const auto* label = definitions.findLabel(key);
  return label != nullptr ? label : builtInLabels().findLabel(key);
}
const LabelDefinition* findLabel(const Definitions& definitions, std::string_view symbol) {
  const auto* label = definitions.findLabel(symbol);
  return label != nullptr ? label : builtInLabels().findLabel(symbol);
}

void findByKey(const Definitions& definitions, const KLV::Key& key, Findings& found) {
  const Types::UniversalLabel label(key);
  if (const auto* set = definitions.findSet(key)) found.add(describe(definitions, *set));
  if (const auto* property = definitions.findProperty(label)) found.add(describe(definitions, *property));
  if (const auto* known = findLabel(definitions, label)) found.add(describe(*known));
}

void findByName(const Definitions& definitions, std::string_view name, Findings& found) {
  for (const auto& set : definitions.sets()) {
    if (set.symbol == name || set.xmlName == name) found.add(describe(definitions, set));
  }
  for (const auto& property : definitions.properties()) {
    if (property.symbol == name || property.xmlName == name) found.add(describe(definitions, property));
  }
  if (const auto* enumeration = definitions.findEnumeration(name)) found.add(describe(*enumeration));
  if (const auto* label = findLabel(definitions, name)) found.add(describe(*label));
}

void findByTag(const Definitions& definitions, uint16 tag, Findings& found) {
  std::set<uint32> properties;
  for (const auto& set : definitions.sets()) {
    for (const auto& use : set.properties) {
      if (use.staticLocalTag == tag) properties.insert(use.property);
    }
  }
  for (const uint32 place : properties) found.add(describe(definitions, definitions.properties()[place]));
}

bool isSameButForCase(std::string_view left, std::string_view right) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 'a' - 'A') : c; };
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [&](char a, char b) { return lower(a) == lower(b); });
}

}  // namespace

std::string listOfSets(const Definitions& definitions) {
  TextTable table({Align::kLeft, Align::kLeft, Align::kLeft, Align::kLeft});
  table.addRow({"set", "key", "parent", "in files"});
  for (const auto& set : definitions.sets()) {
    table.addRow({std::string(set.symbol), registerText(set.key), set.parent.empty() ? "-" : std::string(set.parent),
                  set.isConcrete ? "yes" : "no"});
  }
  return "sets: " + std::to_string(definitions.sets().size()) + "\n" + table.text();
}

std::string descriptionOf(const Definitions& definitions, const std::string& asked) {
  Findings found;
  const std::string wanted = withoutPrefix(asked);
  if (const auto key = MetaMetadata::parseRegisterKey(wanted)) {
    findByKey(definitions, *key, found);
    return found.text();
  }
  findByName(definitions, wanted, found);
  if (const auto tag = tagFrom(wanted)) findByTag(definitions, *tag, found);
  return found.text();
}

std::string similarNames(const Definitions& definitions, const std::string& wanted) {
  std::set<std::string_view> names;
  const auto take = [&](std::string_view name) {
    if (isSameButForCase(name, wanted)) names.insert(name);
  };
  for (const auto& set : definitions.sets()) take(set.symbol), take(set.xmlName);
  for (const auto& property : definitions.properties()) take(property.symbol), take(property.xmlName);
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
