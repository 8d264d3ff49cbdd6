#include "DictionarySearch.h"

#include <algorithm>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/KLV/IdentifierDigits.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Core/Platform/HexDigits.h"
#include "Core/Platform/NearestName.h"
#include "DictionaryEntries.h"
#include "TextTable.h"

namespace Vantor::Tool {

namespace {

constexpr std::size_t kShortestPart = 3;
constexpr std::size_t kFewestDigits = 8;  // of a key: every one begins 060e2b34

}  // namespace

DictionarySearch::DictionarySearch(const Definitions& definitions, const std::string& wanted)
    : definitions_(definitions), wanted_(withoutPrefix(wanted)), digits_(KLV::identifierDigits(wanted).value_or("")) {
  takeCommonNames();
  const auto& sets = definitions.sets();
  for (std::size_t i = 0; i < sets.size(); ++i) {
    take("set", sets[i].symbol, sets[i].tagName, MetaMetadata::registerText(sets[i].key), setNames_[i]);
  }
  const auto& properties = definitions.properties();
  for (std::size_t i = 0; i < properties.size(); ++i) {
    const auto key = MetaMetadata::registerText(properties[i].key.key());
    take("property", properties[i].symbol, properties[i].tagName, key, propertyNames_[i]);
  }
  for (const auto& enumeration : definitions.enumerations()) {
    take("enumeration", enumeration.name, {}, std::string(enumeration.name), {});
  }
  takeLabels(definitions);
  takeLabels(builtInLabels());
}

void DictionarySearch::takeCommonNames() {
  setNames_.resize(definitions_.sets().size());
  propertyNames_.resize(definitions_.properties().size());
  for (const auto& common : definitions_.commonNames()) {
    auto& name = common.property ? propertyNames_[*common.property] : setNames_[common.set];
    name += (name.empty() ? "" : ", ") + std::string(common.name);
    names_.emplace_back(common.name);
  }
}

void DictionarySearch::take(std::string kind, std::string_view symbol, std::string_view tagName, std::string key,
                            std::string_view commonName) {
  names_.emplace_back(symbol);
  if (tagName != symbol) names_.emplace_back(tagName);
  if (wanted_.size() < kShortestPart) return;
  const auto keyDigits = KLV::identifierDigits(key).value_or("");
  const bool hasKey = digits_.size() >= kFewestDigits && keyDigits.compare(0, digits_.size(), digits_) == 0;
  const auto isIn = [this](std::string_view name) { return Platform::containsName(name, wanted_); };
  if (!hasKey && !isIn(symbol) && !isIn(tagName) && !isIn(commonName)) return;
  matches_.push_back({std::move(kind), std::string(symbol), std::move(key), std::string(commonName)});
}

void DictionarySearch::takeLabels(const Definitions& definitions) {
  for (const auto& label : definitions.labels()) {
    take("label", label.symbol, {}, MetaMetadata::registerText(label.key.key()), label.name);
  }
}

std::string DictionarySearch::suggestion() const { return Platform::suggestion(wanted_, names_); }

std::string listOf(const std::vector<DictionarySearch::Match>& matches) {
  TextTable table(4);
  for (const auto& match : matches) {
    TextTable::Row row = {match.kind, match.name, match.kind == "enumeration" ? "-" : match.key};
    if (!match.commonName.empty()) row.push_back(match.commonName);
    table.addRow(std::move(row));
  }
  return "found: " + std::to_string(matches.size()) + "\n" + table.text();
}

}  // namespace Vantor::Tool
