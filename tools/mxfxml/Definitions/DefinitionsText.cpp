#include "Definitions/DefinitionsText.h"

#include <utility>

#include "Core/Dictionary/PropertyTypeText.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Terminal/TextTable.h"

namespace Vantor {

namespace {

using MetaMetadata::registerText;

using Tool::TextTable;

/// Nothing where the name in exports is the symbol.
template <class Definition>
std::string nameOption(const Definition& definition) {
  return definition.tagName == definition.symbol ? "" : "name=" + std::string(definition.tagName);
}

std::string textOf(const EnumerationDefinition& enumeration) {
  TextTable table(2);
  for (const auto& value : enumeration.values) table.addRow({std::to_string(value.number), std::string(value.name)});
  return "\nenum " + std::string(enumeration.name) + " " + Types::Identifiers::name(enumeration.base) + "\n" +
         table.text();
}

TextTable::Row rowOf(const PropertyUse& use, const PropertyDefinition& property) {
  return {tagText(use.staticLocalTag),
          registerText(property.key.key()),
          std::string(property.symbol),
          textOf(property.type),
          std::string(kRequiredStatuses.at(use.requiredStatus)),
          nameOption(property)};
}

std::string textOf(const LabelDefinition& label) {
  return "label " + registerText(label.key.key()) + " " + std::string(label.symbol) + " " + std::string(label.name) +
         "\n";
}

/// Writes sets, and the namespaces that they and their properties are in.
class SetsText {
 public:
  SetsText(const Definitions& definitions, uint32 first) : of_(definitions), first_(first) {}

  std::string text() {
    for (const auto& set : of_.sets()) add(set);
    return std::move(text_);
  }

 private:
  void add(const SetDefinition& set) {
    const bool isNew = set.origin.source >= first_;
    TextTable table(6);
    std::string namespaces;
    bool hasRows = isNew;
    for (const auto& use : set.properties) {
      if (use.origin.source < first_) continue;
      const auto& property = of_.properties()[use.property];
      if (property.origin.source >= first_) namespaces += chosen("properties", property.chosenNamespace, ofProperties_);
      table.addRow(rowOf(use, property));
      hasRows = true;
    }
    if (!hasRows) return;
    if (isNew) namespaces += chosen("sets", set.chosenNamespace, ofSets_);
    text_ += (namespaces.empty() ? "" : "\n") + namespaces + "\n" + (isNew ? headingOf(set) : extensionOf(set)) +
             table.text();
  }

  static std::string headingOf(const SetDefinition& set) {
    const auto name = nameOption(set);
    return registerText(set.key) + "  " + std::string(set.symbol) + "  " +
           (set.parent.empty() ? "-" : std::string(set.parent)) + (set.isConcrete ? "" : "  abstract") +
           (name.empty() ? "" : "  " + name) + "\n";
  }
  static std::string extensionOf(const SetDefinition& set) { return "extend " + std::string(set.symbol) + "\n"; }

  /// The row that chooses a namespace, unless it is chosen already.
  std::string chosen(const char* forWhat, uint32 place, uint32& current) const {
    if (place == current) return {};
    current = place;
    const auto& chosen = of_.namespaces()[place];
    return std::string("namespace ") + forWhat + " " + std::string(chosen.prefix) + " " + std::string(chosen.uri) +
           "\n";
  }

  const Definitions& of_;
  uint32 first_;
  uint32 ofSets_ = 0, ofProperties_ = 0;
  std::string text_;
};

}  // namespace

std::string textOf(const Definitions& definitions, std::string_view comment, uint32 first) {
  const auto isWanted = [first](const auto& definition) { return definition.origin.source >= first; };
  std::string text = "dictionary 1\n# " + std::string(comment) + "\n";
  for (const auto& enumeration : definitions.enumerations()) text += isWanted(enumeration) ? textOf(enumeration) : "";
  text += SetsText(definitions, first).text();
  std::string labels;
  for (const auto& label : definitions.labels()) labels += isWanted(label) ? textOf(label) : "";
  return text + (labels.empty() ? "" : "\n") + labels;
}

}  // namespace Vantor
