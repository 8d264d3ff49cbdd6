#include "Core/Dictionary/DefinitionAdder.h"

#include <algorithm>
#include <charconv>
#include <unordered_map>
#include <utility>

#include "Core/Dictionary/CharacterClass.h"
#include "Core/Dictionary/DictionaryRow.h"
#include "Core/Dictionary/PropertyTypeText.h"
#include "Core/KLV/Keys.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Core/MetaMetadata/Vocabulary.h"
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
  if (!isUniversalLabel(key)) return KLV::isSwappedUUID(key);
  return key.octet(5) == 0x02 && (key.octet(6) == 0x53 || key.octet(6) == 0x7f);
}

bool isPropertyKey(const KLV::Key& key) {
  return (isUniversalLabel(key) && key.octet(5) == 0x01) || KLV::isSwappedUUID(key);
}

/// More than any export needs; each new one is compared with all the others.
constexpr std::size_t kMostNamespaces = 1000;

/// Prefixes that begin with "xml" and these namespaces have a fixed meaning (W3C Namespaces 1.0).
bool isReservedPrefix(std::string_view prefix) {
  const auto isLetter = [&](std::size_t at, char lower) { return (prefix[at] | 0x20) == lower; };
  return prefix.size() >= 3 && isLetter(0, 'x') && isLetter(1, 'm') && isLetter(2, 'l');
}
bool isReservedNamespace(std::string_view uri) {
  return uri == "http://www.w3.org/XML/1998/namespace" || uri == "http://www.w3.org/2000/xmlns/";
}

/// The namespaces that exports use for what is built in.
constexpr MetaMetadata::Namespace kFixedNamespaces[] = {MetaMetadata::kLegacySets,
                                                        MetaMetadata::kLegacyElements,
                                                        MetaMetadata::kST434Sets,
                                                        MetaMetadata::kST434Elements,
                                                        MetaMetadata::kST434Types,
                                                        {u"groups", u"urn:SMPTE:Groups:MXF"},
                                                        {u"types", u"urn:SMPTE:Types:MXF"},
                                                        {u"s422mTypes", u"urn:SMPTE:S422MTypes:MXF"},
                                                        {u"xs", u"http://www.w3.org/2001/XMLSchema"}};

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
  if (overlay == Definitions::Overlay::kRefuse && to_.yieldingSources_.empty()) return;
  const auto mark = [&](const auto& definitions, Templates::vector<bool>& earlier) {
    for (const auto& definition : definitions) {
      const bool isYielding = to_.yieldingSources_.count(definition.origin.source) != 0;
      earlier.push_back(isYielding || overlay == Definitions::Overlay::kReplace);
    }
  };
  mark(to_.sets_, earlierSets_);
  mark(to_.properties_, earlierProperties_);
  mark(to_.enumerations_, earlierEnumerations_);
  mark(to_.labels_, earlierLabels_);
}

void DefinitionAdder::checkName(std::string_view word, const char* what, const Origin& origin) const {
  if (isName(word)) return;
  to_.refuse(origin, "{} cannot be {}", "begin with a letter or '_' and go on with these, digits, '-' and '.'",
             quotedWord(word), what);
}

uint32 DefinitionAdder::addNamespace(std::string_view prefix, std::string_view uri, const Origin& origin) {
  const auto isPrintable = [](char c) { return c > ' ' && c < '\x7f'; };
  if (!std::all_of(uri.begin(), uri.end(), isPrintable)) {
    to_.refuse(origin, "the URI {} has characters that are not printable ASCII; escape them as %XX", nullptr,
               quotedWord(uri));
  }
  if (isReservedPrefix(prefix) || isReservedNamespace(uri)) {
    to_.refuse(origin, "the prefix {} for {} is reserved for XML itself; choose another", nullptr, quotedWord(prefix),
               quotedWord(uri));
  }
  const wstring widePrefix(prefix.begin(), prefix.end()), wideURI(uri.begin(), uri.end());
  for (const auto& fixed : kFixedNamespaces) {
    if (fixed.prefix != widePrefix && fixed.uri != wideURI) continue;
    to_.refuse(
        origin,
        "the prefix {} for {} clashes with '{}' for '{}', which exports have for what is built in; choose another "
        "of your own",
        nullptr, quotedWord(prefix), quotedWord(uri), wstring(fixed.prefix), wstring(fixed.uri));
  }
  if (prefix.find("_REF") != std::string_view::npos) {
    to_.refuse(origin, "exports use names with '_REF' for references; choose another prefix than {}", nullptr,
               quotedWord(prefix));
  }
  for (uint32 place = 1; place < to_.namespaces_.size(); ++place) {
    const auto& known = to_.namespaces_[place];
    if (known.prefix == prefix && known.uri == uri) return place;
    if (known.prefix != prefix && known.uri != uri) continue;
    to_.refuse(
        origin,
        "the prefix {} for {} clashes with {} for {}; an export needs one prefix for each namespace, choose another",
        nullptr, quotedWord(prefix), quotedWord(uri), quotedWord(known.prefix), quotedWord(known.uri));
  }
  if (to_.namespaces_.size() > kMostNamespaces) {
    to_.refuse(origin, "there are {} namespaces already; take one of them", nullptr, kMostNamespaces);
  }
  to_.namespaces_.push_back({prefix, uri});
  return static_cast<uint32>(to_.namespaces_.size() - 1);
}

uint32 DefinitionAdder::addSet(SetDefinition set) {
  if (!isSetKey(set.key)) {
    to_.refuse(
        set.origin, "{} is no key of a set",
        "such a key begins with 060e2b34.0253 or, for any coding, 060e2b34.027f, or is a UUID with swapped halves",
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
    if (isRepeated(known, set)) return place;
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
    to_.refuse(property.origin, "{} is no key of a property",
               "such a key begins with 060e2b34.01, or is a UUID with swapped halves", quotedWord(registerText(key)));
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

bool DefinitionAdder::isRepeated(const SetDefinition& known, const SetDefinition& here) {
  return known.origin.source != here.origin.source && known.symbol == here.symbol && known.tagName == here.tagName &&
         known.parent == here.parent && known.isConcrete == here.isConcrete &&
         known.chosenNamespace == here.chosenNamespace;
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
    const auto& other = to_.enumerations_[known];
    if (other.base == enumeration.base && other.origin.source != enumeration.origin.source) return known;
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
    const auto& known = to_.labels_[place];
    const bool isRepeated = known.symbol == label.symbol && known.name == label.name;
    if (isRepeated && known.origin.source != label.origin.source) return;
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
