#include "DefinitionsText.h"

#include <algorithm>

#include "Core/Dictionary/PropertyTypeText.h"
#include "Core/MetaMetadata/RegisterKey.h"

namespace Vantor {

namespace {

using MetaMetadata::registerText;

using Row = Templates::vector<std::string>;

/// Indented rows, columns aligned.
std::string tableText(const Templates::vector<Row>& rows) {
  Templates::vector<std::size_t> widths;
  for (const auto& row : rows) {
    widths.resize(std::max(widths.size(), row.size()), 0);
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  std::string text;
  for (const auto& row : rows) {
    std::size_t column = text.size();
    for (std::size_t i = 0; i < row.size(); ++i) {
      text.resize(column, ' ');
      text.append("  ").append(row[i]);
      column += 2 + widths[i];
    }
    text += '\n';
  }
  return text;
}

std::string tagText(uint16 tag) {
  constexpr const char* kDigits = "0123456789abcdef";
  if (tag == 0) return "-";
  return {kDigits[tag >> 12], kDigits[tag >> 8 & 15], kDigits[tag >> 4 & 15], kDigits[tag & 15]};
}

/// Nothing where the name in exports is the symbol.
template <class Definition>
std::string nameOption(const Definition& definition) {
  return definition.xmlName == definition.symbol ? "" : "name=" + std::string(definition.xmlName);
}

std::string textOf(const EnumerationDefinition& enumeration) {
  Templates::vector<Row> rows;
  for (const auto& value : enumeration.values) rows.push_back({std::to_string(value.number), std::string(value.name)});
  return "\nenum " + std::string(enumeration.name) + " " + Types::Identifiers::name(enumeration.base) + "\n" +
         tableText(rows);
}

Row rowOf(const PropertyUse& use, const PropertyDefinition& property) {
  Row row = {tagText(use.staticLocalTag), registerText(property.key.key()), std::string(property.symbol),
             textOf(property.type), std::string(kRequiredStatuses.at(use.requiredStatus))};
  if (auto name = nameOption(property); !name.empty()) row.push_back(std::move(name));
  return row;
}

std::string textOf(const SetDefinition& set, const Definitions& definitions) {
  Templates::vector<Row> rows;
  for (const auto& use : set.properties) rows.push_back(rowOf(use, definitions.properties()[use.property]));
  const auto name = nameOption(set);
  return "\n" + registerText(set.key) + "  " + std::string(set.symbol) + "  " +
         (set.parent.empty() ? "-" : std::string(set.parent)) + (set.isConcrete ? "" : "  abstract") +
         (name.empty() ? "" : "  " + name) + "\n" + tableText(rows);
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
