#include "Definitions/DictionarySearch.h"

#include <algorithm>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/KLV/IdentifierDigits.h"
#include "Core/MetaMetadata/NameFolding.h"
#include "Core/MetaMetadata/OtherNames.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Core/Platform/HexDigits.h"
#include "Core/Platform/NearestName.h"
#include "Definitions/DictionaryEntries.h"
#include "Terminal/TextTable.h"

namespace Vantor::Tool {

namespace {

using MetaMetadata::foldedName;

constexpr std::size_t kShortestPart = 3;
constexpr std::size_t kFewestDigits = 8;  // of a key: every one begins 060e2b34
constexpr std::size_t kCodingDigits = 10, kVersionDigits = 14;
constexpr std::size_t kHalf = 16;

bool beginsWith(const std::string& text, const std::string& beginning) {
  return text.compare(0, beginning.size(), beginning) == 0;
}

/// The octet at some digits, as the wanted ones have it.
void copyOctet(const std::string& wanted, std::size_t at, std::string& digits) {
  if (wanted.size() >= at + 2 && digits.size() >= at + 2) digits.replace(at, 2, wanted, at, 2);
}

/// The first half of a swapped identification, which has it last.
std::string halvesSwapped(const std::string& digits) {
  return digits.size() < kHalf ? digits : digits.substr(kHalf) + digits.substr(0, kHalf);
}

/// "Rec. 709" is "BT.709" in the register of labels.
std::vector<std::string> spellingsOf(std::string_view wanted) {
  std::vector<std::string> spellings = {foldedName(wanted)};
  const auto& folded = spellings.front();
  const bool isRecommendation = beginsWith(folded, "rec") && folded.size() > 3 && MetaMetadata::isDigit(folded[3]);
  if (isRecommendation) spellings.push_back("bt" + folded.substr(3));
  return spellings;
}

}  // namespace

DictionarySearch::DictionarySearch(const Definitions& definitions, const std::string& wanted)
    : definitions_(definitions),
      wanted_(withoutPrefix(wanted)),
      digits_(KLV::identifierDigits(wanted).value_or("")),
      folded_(spellingsOf(wanted_)),
      meant_(MetaMetadata::symbolsMeantBy(wanted_)) {
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
  for (const auto& enumeration : definitions.enumerations()) takeEnumeration(enumeration);
  takeLabels(definitions);
  takeLabels(builtInLabels());
  std::stable_partition(matches_.begin(), matches_.end(), [](const Match& match) { return match.isWhole; });
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

void DictionarySearch::takeEnumeration(const EnumerationDefinition& enumeration) {
  std::string values;
  Match ignored;
  for (const auto& value : enumeration.values) {
    if (isIn(value.name, ignored)) values += (values.empty() ? "" : ", ") + std::string(value.name);
  }
  take("enumeration", enumeration.name, {}, std::string(enumeration.name), std::move(values));
}

void DictionarySearch::takeLabels(const Definitions& definitions) {
  for (const auto& label : definitions.labels()) {
    take("label", label.symbol, {}, MetaMetadata::registerText(label.key.key()), std::string(label.name));
  }
}

void DictionarySearch::take(const char* kind, std::string_view symbol, std::string_view tagName, std::string key,
                            std::string remark) {
  names_.emplace_back(symbol);
  if (tagName != symbol) names_.emplace_back(tagName);
  Match match{kind, std::string(symbol), std::move(key), std::move(remark)};
  match.isWhole = std::find(meant_.begin(), meant_.end(), symbol) != meant_.end();
  bool isFound = match.isWhole;
  if (digits_.size() >= kFewestDigits) {
    isFound = beginsKey(KLV::identifierDigits(match.key).value_or(""), match.kind == "set") || isFound;
  }
  for (const auto name : {symbol, tagName, std::string_view(match.remark)}) isFound = isIn(name, match) || isFound;
  if (isFound) matches_.push_back(std::move(match));
}

bool DictionarySearch::isIn(std::string_view name, Match& match) const {
  if (name.empty() || folded_.front().size() < kShortestPart) return false;
  const auto folded = foldedName(name);
  return std::any_of(folded_.begin(), folded_.end(), [&](const std::string& part) {
    match.isWhole = match.isWhole || folded == part;
    return folded.find(part) != std::string::npos;
  });
}

// Files have another octet 6 in the keys of sets than the register; octet 8 is the version.
bool DictionarySearch::beginsKey(const std::string& keyDigits, bool isOfSet) const {
  const auto isBeginning = [&](std::string key, const std::string& wanted) {
    if (isOfSet) copyOctet(wanted, kCodingDigits, key);
    copyOctet(wanted, kVersionDigits, key);
    return beginsWith(key, wanted);
  };
  if (isBeginning(keyDigits, digits_)) return true;
  std::string swapped = halvesSwapped(keyDigits);
  if (isOfSet) copyOctet(digits_, kHalf + kCodingDigits, swapped);
  copyOctet(digits_, kHalf + kVersionDigits, swapped);
  return beginsWith(swapped, digits_);
}

std::string DictionarySearch::suggestion() const { return Platform::suggestion(wanted_, names_); }

std::string listOf(const std::vector<DictionarySearch::Match>& matches) {
  TextTable table(4);
  for (const auto& match : matches) {
    TextTable::Row row = {match.kind, match.name, match.kind == "enumeration" ? "-" : match.key};
    if (!match.remark.empty()) row.push_back(match.remark);
    table.addRow(std::move(row));
  }
  return "found: " + std::to_string(matches.size()) + "\n" + table.text();
}

}  // namespace Vantor::Tool
