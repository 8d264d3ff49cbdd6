#include "Registers/Descriptions.h"

#include <algorithm>

#include "Core/Dictionary/EmbeddedText.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Registers/TypesTable.h"

namespace Vantor::Registers {

namespace {

template <class Entry>
void addRows(const Templates::vector<Entry>& entries, std::string& table) {
  for (const auto& entry : entries) {
    const auto& [definition, document] = entry.texts;
    if (definition.empty() && document.empty()) continue;
    table += MetaMetadata::registerText(entry.key) + "\t" + document + "\t" + definition + "\n";
  }
}

}  // namespace

std::string tableOfDescriptions(const Entries& entries) {
  std::string table = "# Made from the SMPTE metadata registers Groups, Elements, Types and Labels.\n";
  addRows(entries.groups, table);
  addRows(entries.elements, table);
  addRows(entries.types, table);
  addRows(entries.labels, table);
  return table;
}

Explanation explanationIn(std::string_view table, const KLV::Key& key) {
  const auto start = "\n" + MetaMetadata::registerText(key) + "\t";
  const auto found = table.find(start);
  if (found == std::string_view::npos) return {};
  auto row = table.substr(found + start.size());
  row = row.substr(0, row.find('\n'));
  const auto tab = row.find('\t');
  return {row.substr(tab + 1), row.substr(0, tab)};
}

Explanation registeredExplanation(const KLV::Key& key) { return explanationIn(Embedded::smpteDescriptions(), key); }

Explanation registeredExplanation(std::string_view enumeration) {
  const auto& types = registeredTypes();
  const auto found =
      std::find_if(types.begin(), types.end(), [&](const TypeEntry& type) { return type.symbol == enumeration; });
  return found == types.end() ? Explanation() : registeredExplanation(found->key);
}

}  // namespace Vantor::Registers
