#include "DefinitionsText.h"

#include "Core/Dictionary/PropertyTypeText.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "tools/mxfxml/TextTable.h"

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

std::string textOf(const SetDefinition& set, const Definitions& definitions) {
  TextTable table(6);
  for (const auto& use : set.properties) table.addRow(rowOf(use, definitions.properties()[use.property]));
  const auto name = nameOption(set);
  return "\n" + registerText(set.key) + "  " + std::string(set.symbol) + "  " +
         (set.parent.empty() ? "-" : std::string(set.parent)) + (set.isConcrete ? "" : "  abstract") +
         (name.empty() ? "" : "  " + name) + "\n" + table.text();
}

std::string textOf(const LabelDefinition& label) {
  return "label " + registerText(label.key.key()) + " " + std::string(label.symbol) + " " + std::string(label.name) +
         "\n";
}

}  // namespace

std::string textOf(const Definitions& definitions, std::string_view comment) {
  std::string text = "dictionary 1\n# " + std::string(comment) + "\n";
  for (const auto& enumeration : definitions.enumerations()) text += textOf(enumeration);
  for (const auto& set : definitions.sets()) text += textOf(set, definitions);
  if (!definitions.labels().empty()) text += "\n";
  for (const auto& label : definitions.labels()) text += textOf(label);
  return text;
}

}  // namespace Vantor
