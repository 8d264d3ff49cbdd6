#include "Core/Dictionary/DefinitionAdder.h"

#include <algorithm>
#include <charconv>
#include <unordered_map>
#include <utility>

#include "Core/Dictionary/CharacterClass.h"
#include "Core/Dictionary/DictionaryRow.h"
#include "Core/Dictionary/PropertyTypeText.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Core/Types/LocalTag.h"

namespace Vantor {

namespace {

using MetaMetadata::registerText;
using Types::Identifiers::kNone;

constexpr uint32 kNotFound = MetaMetadata::HashIndex::kNotFound;

constexpr const char* kOtherKey = "there is a {} {} already ({}), with another key";
constexpr const char* kChooseSymbol = "choose another symbol";

bool isName(std::string_view text) {
  const auto isRest = [](char c) { return CharacterClass::is(c, CharacterClass::kName); };
  return !text.empty() && CharacterClass::is(text.front(), CharacterClass::kNameStart) &&
         std::all_of(text.begin(), text.end(), isRest);
}

bool isUniversalLabel(const KLV::Key& key) {
  return key.octet(1) == 0x06 && key.octet(2) == 0x0e && key.octet(3) == 0x2b && key.octet(4) == 0x34;
}

bool isSetKey(const KLV::Key& key) {
  return isUniversalLabel(key) && key.octet(5) == 0x02 && (key.octet(6) == 0x53 || key.octet(6) == 0x7f);
}

bool isPropertyKey(const KLV::Key& key) { return isUniversalLabel(key) && key.octet(5) == 0x01; }

/// Appends a definition, or replaces the one that gives way to it.
template <class Definition>
uint32 put(Definition definition, uint32 place, Templates::vector<Definition>& list, Templates::vector<bool>& earlier) {
  if (place == kNotFound) {
    list.push_back(std::move(definition));
    return static_cast<uint32>(list.size() - 1);
  }
  earlier[place] = false;
  list[place] = std::move(definition);
  return place;
}

}  // namespace

DefinitionAdder::DefinitionAdder(Definitions& definitions, Definitions::Overlay overlay) : to_(definitions) {
  to_.isChecked_ = false;
  if (overlay == Definitions::Overlay::kRefuse) return;
  earlierSets_.assign(to_.sets_.size(), true);
  earlierProperties_.assign(to_.properties_.size(), true);
  earlierEnumerations_.assign(to_.enumerations_.size(), true);
  earlierLabels_.assign(to_.labels_.size(), true);
}

void DefinitionAdder::checkName(std::string_view word, const char* what, const Origin& origin) const {
  if (isName(word)) return;
  to_.refuse(origin, "{} cannot be {}", "begin with a letter or '_' and go on with these, digits, '-' and '.'",
             quotedWord(word), what);
}

uint32 DefinitionAdder::addSet(SetDefinition set) {
  if (!isSetKey(set.key)) {
    to_.refuse(set.origin, "{} is no key of a set",
               "such a key begins with 060e2b34.0253 or, for any coding, 060e2b34.027f",
               quotedWord(registerText(set.key)));
  }
  checkName(set.symbol, "a symbol", set.origin);
  if (!set.parent.empty()) checkName(set.parent, "a parent's symbol", set.origin);
  if (set.tagName != set.symbol) checkName(set.tagName, "a name in XML", set.origin);
  uint32 place = to_.placeOfSet(set.key);
  const uint32 named = to_.placeOfSet(set.symbol);
  // A newer register may give a set another key: it is that set all the same.
  if (place == kNotFound && mayReplace(earlierSets_, named)) place = named;
  if (place != kNotFound && !mayReplace(earlierSets_, place)) {
    const auto& known = to_.sets_[place];
    to_.refuse(set.origin, "the key is that of the set {} ({})", "to add properties to that set, write: extend {}",
               known.symbol, to_.where(known.origin), known.symbol);
  }
  // One that gives way may get another symbol yet; `checkSymbols` looks again.
  if (named != kNotFound && named != place && !mayReplace(earlierSets_, named)) {
    to_.refuse(set.origin, kOtherKey, kChooseSymbol, "set", set.symbol, to_.where(to_.sets_[named].origin));
  }
  place = put(std::move(set), place, to_.sets_, earlierSets_);
  to_.enterSet(place);
  return place;
}

void DefinitionAdder::addProperty(uint32 set, PropertyDefinition property, PropertyUse use) {
  const KLV::Key key = property.key.key();
  if (!isPropertyKey(key)) {
    to_.refuse(property.origin, "{} is no key of a property", "such a key begins with 060e2b34.01",
               quotedWord(registerText(key)));
  }
  checkName(property.symbol, "a symbol", property.origin);
  if (!Types::LocalTag(use.staticLocalTag).isStaticLocalTag()) {
    to_.refuse(use.origin, "{} is a dynamic local tag, which each file gives by itself", "write '-'",
               quotedWord(tagText(use.staticLocalTag)));
  }
  if (property.tagName != property.symbol) checkName(property.tagName, "a name in XML", property.origin);
  use.property = placeOf(std::move(property));
  to_.sets_[set].properties.push_back(use);
}

uint32 DefinitionAdder::placeOf(PropertyDefinition property) {
  const uint32 known = to_.placeOfProperty(property.key);
  if (known != kNotFound && !mayReplace(earlierProperties_, known)) {
    checkAgreement(to_.properties_[known], property);
    return known;
  }
  const uint32 place = put(std::move(property), known, to_.properties_, earlierProperties_);
  if (known == kNotFound) to_.enterProperty(place);
  return place;
}

void DefinitionAdder::checkAgreement(const PropertyDefinition& known, const PropertyDefinition& here) const {
  const PropertyType &one = known.type, &other = here.type;
  // An enumeration may stand for the type that it is over, but not for another enumeration.
  const bool isOneValue = one.enumeration.empty() || other.enumeration.empty()
                              ? one.value != kNone && one.value == other.value
                              : one.enumeration == other.enumeration;
  const bool isOneTarget = one.target == other.target || one.target.empty() || other.target.empty();
  // A property keeps its namespace where another file lists it; two files cannot both choose one.
  const bool isOneNamespace =
      known.chosenNamespace == here.chosenNamespace || known.chosenNamespace == 0 || here.chosenNamespace == 0;
  if (isOneNamespace && one.collection == other.collection && isOneValue && isOneTarget &&
      known.symbol == here.symbol && known.tagName == here.tagName) {
    return;
  }
  const std::string name = known.tagName == known.symbol ? "" : " name=" + std::string(known.tagName);
  to_.refuse(here.origin, "the key is that of the property {} {}{} ({})",
             "write it as it stands there, or take another key", known.symbol, textOf(one), name,
             to_.where(known.origin));
}

uint32 DefinitionAdder::addEnumeration(EnumerationDefinition enumeration) {
  checkName(enumeration.name, "the name of an enumeration", enumeration.origin);
  if (propertyTypeNamed(enumeration.name) != kNone) {
    to_.refuse(enumeration.origin, "{} is the name of a type", "choose another", quotedWord(enumeration.name));
  }
  const uint32 known = to_.placeOfEnumeration(enumeration.name);
  if (known != kNotFound && !mayReplace(earlierEnumerations_, known)) {
    to_.refuse(enumeration.origin, "there is an enumeration {} already ({})", "choose another name",
               quotedWord(enumeration.name), to_.where(to_.enumerations_[known].origin));
  }
  const uint32 place = put(std::move(enumeration), known, to_.enumerations_, earlierEnumerations_);
  if (known == kNotFound) to_.enterEnumeration(place);
  return place;
}

void DefinitionAdder::addValue(uint32 enumeration, std::string_view digits, std::string_view name,
                               const Origin& origin) {
  auto& definition = to_.enumerations_[enumeration];
  checkName(name, "the name of a value", origin);
  EnumerationValue value;
  value.name = name;
  value.origin = origin;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value.number);
  if (error != std::errc() || end != digits.data() + digits.size() || !fitsInto(definition.base, value.number)) {
    to_.refuse(origin, "{} is no number of the type {}", "write a decimal number in its range", quotedWord(digits),
               Types::Identifiers::name(definition.base));
  }
  definition.values.push_back(value);
}

void DefinitionAdder::addLabel(const LabelDefinition& label) {
  const KLV::Key key = label.key.key();
  if (!isUniversalLabel(key)) {
    to_.refuse(label.origin, "{} is no label", "a label begins with 060e2b34", quotedWord(registerText(key)));
  }
  checkName(label.symbol, "a symbol", label.origin);
  uint32 place = to_.placeOfLabel(label.key);
  const uint32 named = to_.placeOfLabel(label.symbol);
  if (place == kNotFound && mayReplace(earlierLabels_, named)) place = named;
  if (place != kNotFound && !mayReplace(earlierLabels_, place)) {
    to_.refuse(label.origin, "the label is defined already, as {} ({})", "take one of the two away",
               to_.labels_[place].symbol, to_.where(to_.labels_[place].origin));
  }
  if (named != kNotFound && named != place) {
    to_.refuse(label.origin, kOtherKey, kChooseSymbol, "label", label.symbol, to_.where(to_.labels_[named].origin));
  }
  to_.enterLabel(put(label, place, to_.labels_, earlierLabels_));
}

void DefinitionAdder::addCommonName(const CommonNameDefinition& common) {
  checkName(common.name, "a common name", common.origin);
  to_.commonNames_.push_back(common);
}

void DefinitionAdder::finish() {
  if (!earlierSets_.empty()) checkSymbols();
  if (!earlierProperties_.empty()) replaceRenewedProperties();
}

void DefinitionAdder::checkSymbols() const {
  for (uint32 place = 0; place < to_.sets_.size(); ++place) {
    const auto& set = to_.sets_[place];
    const uint32 first = to_.placeOfSet(set.symbol);
    if (first == place) continue;
    const auto& other = to_.sets_[first];
    const auto& later = mayReplace(earlierSets_, place) ? other : set;
    const auto& earlier = &later == &set ? other : set;
    to_.refuse(later.origin, kOtherKey, kChooseSymbol, "set", set.symbol, to_.where(earlier.origin));
  }
}

// A newer register may give a property another key. Whatever still uses the older definition uses the newer one then,
// which stands in both places.
void DefinitionAdder::replaceRenewedProperties() {
  std::unordered_map<std::string_view, uint32> newer;
  for (uint32 place = 0; place < to_.properties_.size(); ++place) {
    const bool isOld = mayReplace(earlierProperties_, place);
    if (!isOld && to_.properties_[place].chosenNamespace == 0) newer.emplace(to_.properties_[place].tagName, place);
  }
  for (uint32 place = 0; place < earlierProperties_.size(); ++place) {
    auto& property = to_.properties_[place];
    const auto found = newer.find(property.tagName);
    if (earlierProperties_[place] && property.chosenNamespace == 0 && found != newer.end()) {
      property = to_.properties_[found->second];
    }
  }
}

bool DefinitionAdder::mayReplace(const Templates::vector<bool>& earlier, uint32 place) const {
  return place < earlier.size() && earlier[place];
}

}  // namespace Vantor
