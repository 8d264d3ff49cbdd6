#include "Core/Dictionary/DefinitionReader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <unordered_map>
#include <utility>

#include "Core/Dictionary/CharacterClass.h"
#include "Core/Dictionary/DefinitionIndex.h"
#include "Core/Dictionary/PropertyTypeText.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Core/MetaMetadata/Vocabulary.h"

namespace Vantor {

namespace {

using Types::Identifiers::kNone;

constexpr std::string_view kNameOption = "name=";

constexpr const char* kSetShape = "a set is: key, symbol, parent or '-', and 'abstract' or name=X where that holds";
constexpr const char* kPropertyShape =
    "a property is: local tag or '-', key, symbol, type, status, and name=X where XML has another name";
constexpr const char* kEnumerationShape = "an enumeration is: enum, name, integer type";
constexpr const char* kValueShape = "a value of an enumeration is: number, name";
constexpr const char* kLabelShape = "a label is: label, key, symbol, name";
constexpr const char* kExtensionShape = "an extension is: extend, symbol of the set";
constexpr const char* kNamespaceShape = "a namespace is: namespace, 'sets' or 'properties', prefix, URI";
constexpr const char* kFormatShape = "the first row of a dictionary file has to be: dictionary 1";

/// ST 377-1: tags from here on are given by each file's primer pack.

/// The order is that of `MetaAttribute::requiredStatus`.
constexpr std::array<std::string_view, 5> kStatuses = {"required", "encoder-required", "decoder-required",
                                                       "best-effort", "optional"};

bool isName(std::string_view text) {
  const auto isRest = [](char c) { return CharacterClass::is(c, CharacterClass::kName); };
  return !text.empty() && CharacterClass::is(text.front(), CharacterClass::kNameStart) &&
         std::all_of(text.begin(), text.end(), isRest);
}

bool isUniversalLabel(const KLV::Key& key) {
  return key.octet(1) == 0x06 && key.octet(2) == 0x0e && key.octet(3) == 0x2b && key.octet(4) == 0x34;
}

std::string asText(std::u16string_view ascii) { return {ascii.begin(), ascii.end()}; }

/// More than any document should have; each new one is compared with all the others.
constexpr std::size_t kMostNamespaces = 1000;

/// Namespaces in XML: prefixes that begin with "xml", and these namespaces, mean something else than a dictionary says.
bool isReservedPrefix(std::string_view prefix) {
  const auto isLetter = [&](std::size_t at, char lower) { return (prefix[at] | 0x20) == lower; };
  return prefix.size() >= 3 && isLetter(0, 'x') && isLetter(1, 'm') && isLetter(2, 'l');
}
bool isReservedNamespace(std::string_view uri) {
  return uri == "http://www.w3.org/XML/1998/namespace" || uri == "http://www.w3.org/2000/xmlns/";
}

/// The namespaces that every document may have.
struct FixedNamespace {
  std::string prefix;
  std::string uri;
};
const std::array<FixedNamespace, 9>& fixedNamespaces() {
  using namespace MetaMetadata;
  static const auto from = [](const XMLNamespace& names) {
    return FixedNamespace{asText(names.prefix), asText(names.uri)};
  };
  static const std::array<FixedNamespace, 9> fixed = {{from(kLegacySets),
                                                       from(kLegacyElements),
                                                       from(kST434Sets),
                                                       from(kST434Elements),
                                                       from(kST434Types),
                                                       {"groups", "urn:SMPTE:Groups:MXF"},
                                                       {"types", "urn:SMPTE:Types:MXF"},
                                                       {"s422mTypes", "urn:SMPTE:S422MTypes:MXF"},
                                                       {"xs", "http://www.w3.org/2001/XMLSchema"}}};
  return fixed;
}

}  // namespace

DefinitionReader::DefinitionReader(Definitions& definitions, Definitions::Overlay overlay, uint32 source,
                                   const Templates::vector<Origin>* origins)
    : to_(definitions), overlay_(overlay), source_(source), origins_(origins) {
  if (overlay_ == Definitions::Overlay::kRefuse) return;
  earlierSets_.assign(to_.sets_.size(), true);
  earlierProperties_.assign(to_.properties_.size(), true);
  earlierEnumerations_.assign(to_.enumerations_.size(), true);
  earlierLabels_.assign(to_.labels_.size(), true);
}

void DefinitionReader::read(std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    ++line_;
    readRow(DictionaryRow(text.substr(0, end)));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  if (!hasFormat_) {
    line_ = 1;
    refuse(kFormatShape, __LINE__);
  }
  if (overlay_ == Definitions::Overlay::kReplace) completeOverlay();
}

void DefinitionReader::completeOverlay() {
  for (uint32 place = 0; place < to_.sets_.size(); ++place) {
    const auto& set = to_.sets_[place];
    const uint32 first = to_.index_->findSet(to_, set.symbol);
    if (first == place) continue;
    const auto& other = to_.sets_[first];
    const bool isLater = place >= earlierSets_.size() || !earlierSets_[place];
    to_.refuse(isLater ? set.origin : other.origin,
               "there is a set " + std::string(set.symbol) + " already (" +
                   to_.where(isLater ? other.origin : set.origin) + "), with another key; choose another symbol",
               "Core/Dictionary/DefinitionReader", __LINE__);
  }
  replaceRenewedProperties();
}

// A newer register may give a property another key. Whatever still uses the older definition uses the newer one then,
// which stands in both places.
void DefinitionReader::replaceRenewedProperties() {
  std::unordered_map<std::string_view, uint32> newer;
  for (uint32 place = 0; place < to_.properties_.size(); ++place) {
    const bool isOld = place < earlierProperties_.size() && earlierProperties_[place];
    if (!isOld && to_.properties_[place].chosenNamespace == 0) newer.emplace(to_.properties_[place].xmlName, place);
  }
  for (uint32 place = 0; place < earlierProperties_.size(); ++place) {
    auto& property = to_.properties_[place];
    const auto found = newer.find(property.xmlName);
    if (earlierProperties_[place] && property.chosenNamespace == 0 && found != newer.end()) {
      property = to_.properties_[found->second];
    }
  }
}

void DefinitionReader::readRow(const DictionaryRow& row) {
  if (row.isBlank()) return;
  if (!hasFormat_) return readFormat(row);
  if (!row.isIndented()) return readHeading(row);
  switch (section_) {
    case Section::kSet:
      return readProperty(row);
    case Section::kEnumeration:
      return readEnumerationValue(row);
    case Section::kNone:
      refuse(
          "an indented row belongs to the set or enumeration above it, and there is none; put it under one, or take "
          "the white space from its start",
          __LINE__);
  }
}

void DefinitionReader::readHeading(const DictionaryRow& row) {
  section_ = Section::kNone;
  const std::string_view word = row[0];
  if (word.front() >= '0' && word.front() <= '9') return readSet(row);
  if (word == "label") return readLabel(row);
  if (word == "enum") return readEnumeration(row);
  if (word == "extend") return readExtension(row);
  if (word == "namespace") return readNamespace(row);
  if (word.substr(0, 4) == "urn:") return readSet(row);
  refuse(quoted(word) + " begins no row; a row that is not indented begins with a set's key, or with extend, enum, " +
             "label or namespace",
         __LINE__);
}

void DefinitionReader::readFormat(const DictionaryRow& row) {
  if (row.isIndented()) refuse("there is white space before the row; " + std::string(kFormatShape), __LINE__);
  if (row.size() != 2 || row[0] != "dictionary") refuse(kFormatShape, __LINE__);
  if (row[1] != "1") {
    refuse("the format " + quoted(row[1]) + " is not known; this version reads format 1", __LINE__);
  }
  hasFormat_ = true;
}

void DefinitionReader::readNamespace(const DictionaryRow& row) {
  expectWords(row, 4, 4, kNamespaceShape);
  const bool forSets = row[1] == "sets";
  if (!forSets && row[1] != "properties") {
    refuse(quoted(row[1]) + " is neither 'sets' nor 'properties'; " + kNamespaceShape, __LINE__);
  }
  (forSets ? setNamespace_ : elementNamespace_) = addNamespace(nameOf(row[2], "a prefix"), row[3]);
}

uint32 DefinitionReader::addNamespace(std::string_view prefix, std::string_view uri) {
  const auto isPrintable = [](char c) { return c > ' ' && c < '\x7f'; };
  if (!std::all_of(uri.begin(), uri.end(), isPrintable)) {
    refuse("the URI " + quoted(uri) + " has characters that are not printable ASCII; escape them as %XX", __LINE__);
  }
  if (isReservedPrefix(prefix) || isReservedNamespace(uri)) {
    refuse("the prefix " + quoted(prefix) + " for " + quoted(uri) + " is reserved for XML itself; choose another",
           __LINE__);
  }
  for (const auto& fixed : fixedNamespaces()) {
    if (fixed.prefix != prefix && fixed.uri != uri) continue;
    refuse("the prefix " + quoted(prefix) + " for " + quoted(uri) + " clashes with '" + fixed.prefix + "' for '" +
               fixed.uri + "', which documents have for what is built in; choose another of your own",
           __LINE__);
  }
  if (prefix.find("_REF") != std::string_view::npos) {
    refuse("documents use names with '_REF' for references; choose another prefix than " + quoted(prefix), __LINE__);
  }
  const uint32 byPrefix = to_.index_->findNamespace(to_, prefix, &ChosenNamespace::prefix);
  const uint32 byURI = to_.index_->findNamespace(to_, uri, &ChosenNamespace::uri);
  if (byPrefix != byURI) {
    const auto& known = to_.namespaces_[byPrefix != Definitions::Index::kNotFound ? byPrefix : byURI];
    refuse("the prefix " + quoted(prefix) + " for " + quoted(uri) + " clashes with " + quoted(known.prefix) + " for " +
               quoted(known.uri) + "; a document needs one prefix for each namespace, choose another",
           __LINE__);
  }
  if (byPrefix != Definitions::Index::kNotFound) return byPrefix;
  if (to_.namespaces_.size() > kMostNamespaces) {
    refuse("there are " + std::to_string(kMostNamespaces) + " namespaces already; take one of them", __LINE__);
  }
  to_.namespaces_.push_back({prefix, uri});
  to_.index_->enterNamespace(to_, static_cast<uint32>(to_.namespaces_.size() - 1));
  return static_cast<uint32>(to_.namespaces_.size() - 1);
}

void DefinitionReader::readSet(const DictionaryRow& row) {
  expectWords(row, 3, 5, kSetShape);
  SetDefinition set;
  set.key = setKeyOf(row[0]);
  set.symbol = nameOf(row[1], "a symbol");
  if (row[2] != "-") set.parent = nameOf(row[2], "a parent's symbol");
  set.isConcrete = row[3] != "abstract";
  const std::size_t option = set.isConcrete ? 3 : 4;
  if (row.size() > option + 1) refuse("there are too many words; " + std::string(kSetShape), __LINE__);
  set.xmlName = xmlNameOf(row[option], set.symbol, kSetShape);
  set.chosenNamespace = setNamespace_;
  set.origin = here();
  set_ = addSet(std::move(set));
  section_ = Section::kSet;
}

uint32 DefinitionReader::addSet(SetDefinition definition) {
  uint32 place = to_.index_->findSet(to_, definition.key);
  const uint32 named = to_.index_->findSet(to_, definition.symbol);
  // A register may give a set another key: it is that set all the same.
  if (place == Definitions::Index::kNotFound && mayReplace(earlierSets_, named)) place = named;
  if (place != Definitions::Index::kNotFound && !mayReplace(earlierSets_, place)) {
    const auto& known = to_.sets_[place];
    refuse("the key is that of the set " + std::string(known.symbol) + " (" + to_.where(known.origin) +
               "); to add properties to that set, write: extend " + std::string(known.symbol),
           __LINE__);
  }
  // One that gives way may get another symbol yet; `checkOverlay` looks again.
  if (named != Definitions::Index::kNotFound && named != place && !mayReplace(earlierSets_, named)) {
    refuse("there is a set " + std::string(definition.symbol) + " already (" + to_.where(to_.sets_[named].origin) +
               "), with another key; choose another symbol",
           __LINE__);
  }
  if (place == Definitions::Index::kNotFound) {
    place = static_cast<uint32>(to_.sets_.size());
    to_.sets_.push_back(std::move(definition));
    to_.index_->enterSet(to_, place);
  } else {
    earlierSets_[place] = false;
    to_.sets_[place] = std::move(definition);
    to_.index_->enterSet(to_, place);
  }
  return place;
}

void DefinitionReader::readExtension(const DictionaryRow& row) {
  expectWords(row, 2, 2, kExtensionShape);
  set_ = to_.index_->findSet(to_, row[1]);
  if (set_ == Definitions::Index::kNotFound) {
    refuse("there is no set " + quoted(row[1]) + " to extend; define it before, or give the file that does so first",
           __LINE__);
  }
  section_ = Section::kSet;
}

void DefinitionReader::readEnumeration(const DictionaryRow& row) {
  expectWords(row, 3, 3, kEnumerationShape);
  EnumerationDefinition enumeration;
  enumeration.name = nameOf(row[1], "the name of an enumeration");
  if (propertyTypeNamed(enumeration.name) != kNone) {
    refuse(quoted(enumeration.name) + " is the name of a type; choose another", __LINE__);
  }
  enumeration.base = propertyTypeNamed(row[2]);
  if (!isEnumerable(enumeration.base)) {
    refuse("an enumeration cannot be over " + quoted(row[2]) + "; take one of Int8 to Int64 and UInt8 to UInt64",
           __LINE__);
  }
  enumeration.origin = here();
  const uint32 known = to_.index_->findEnumeration(to_, enumeration.name);
  if (known == Definitions::Index::kNotFound) {
    to_.enumerations_.push_back(std::move(enumeration));
    to_.index_->enterEnumeration(to_, static_cast<uint32>(to_.enumerations_.size() - 1));
    set_ = static_cast<uint32>(to_.enumerations_.size() - 1);
  } else if (mayReplace(earlierEnumerations_, known)) {
    earlierEnumerations_[known] = false;
    to_.enumerations_[known] = std::move(enumeration);
    set_ = known;
  } else {
    refuse("there is an enumeration " + quoted(row[1]) + " already (" + to_.where(to_.enumerations_[known].origin) +
               "); choose another name",
           __LINE__);
  }
  section_ = Section::kEnumeration;
}

void DefinitionReader::readEnumerationValue(const DictionaryRow& row) {
  expectWords(row, 2, 2, kValueShape);
  auto& enumeration = to_.enumerations_[set_];
  EnumerationValue value;
  value.name = nameOf(row[1], "the name of a value");
  const std::string_view digits = row[0];
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value.number);
  if (error != std::errc() || end != digits.data() + digits.size() || !fitsInto(enumeration.base, value.number)) {
    refuse(quoted(digits) + " is no number of the type " + Types::Identifiers::name(enumeration.base) +
               "; write a decimal number in its range",
           __LINE__);
  }
  value.origin = here();
  enumeration.values.push_back(value);
}

void DefinitionReader::readLabel(const DictionaryRow& row) {
  if (row.size() < 4) refuse("a word is missing; " + std::string(kLabelShape), __LINE__);
  LabelDefinition label;
  const KLV::Key key = keyOf(row[1]);
  if (!isUniversalLabel(key)) refuse(quoted(row[1]) + " is no label; a label begins with 060e2b34", __LINE__);
  label.key = Types::UniversalLabel(key);
  label.symbol = nameOf(row[2], "a symbol");
  label.name = row.from(3);
  label.origin = here();
  addLabel(label);
}

void DefinitionReader::addLabel(const LabelDefinition& definition) {
  uint32 place = to_.index_->findLabel(to_, definition.key);
  const uint32 named = to_.index_->findLabel(to_, definition.symbol);
  if (place == Definitions::Index::kNotFound && mayReplace(earlierLabels_, named)) place = named;
  if (place != Definitions::Index::kNotFound && !mayReplace(earlierLabels_, place)) {
    refuse("the label is defined already, as " + std::string(to_.labels_[place].symbol) + " (" +
               to_.where(to_.labels_[place].origin) + "); take one of the two away",
           __LINE__);
  }
  if (named != Definitions::Index::kNotFound && named != place) {
    refuse("there is a label " + std::string(definition.symbol) + " already (" + to_.where(to_.labels_[named].origin) +
               "), with another key; choose another symbol",
           __LINE__);
  }
  if (place == Definitions::Index::kNotFound) {
    place = static_cast<uint32>(to_.labels_.size());
    to_.labels_.push_back(definition);
  } else {
    earlierLabels_[place] = false;
    to_.labels_[place] = definition;
  }
  to_.index_->enterLabel(to_, place);
}

void DefinitionReader::readProperty(const DictionaryRow& row) {
  expectWords(row, 5, 6, kPropertyShape);
  PropertyUse use;
  use.staticLocalTag = tagOf(row[0]);
  PropertyDefinition property;
  property.key = propertyKeyOf(row[1]);
  property.symbol = nameOf(row[2], "a symbol");
  property.type = typeOf(row[3]);
  use.requiredStatus = statusOf(row[4]);
  property.xmlName = xmlNameOf(row[5], property.symbol, kPropertyShape);
  property.chosenNamespace = elementNamespace_;
  property.origin = use.origin = here();
  use.property = addProperty(std::move(property));
  to_.sets_[set_].properties.push_back(use);
}

uint32 DefinitionReader::addProperty(PropertyDefinition definition) {
  const uint32 known = to_.index_->findProperty(to_, definition.key);
  if (known == Definitions::Index::kNotFound) {
    to_.properties_.push_back(std::move(definition));
    const auto place = static_cast<uint32>(to_.properties_.size() - 1);
    to_.index_->enterProperty(to_, place);
    return place;
  }
  if (mayReplace(earlierProperties_, known)) {
    earlierProperties_[known] = false;
    to_.properties_[known] = std::move(definition);
  } else {
    checkAgreement(to_.properties_[known], definition);
  }
  return known;
}

void DefinitionReader::checkAgreement(const PropertyDefinition& known, const PropertyDefinition& here) const {
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
      known.symbol == here.symbol && known.xmlName == here.xmlName) {
    return;
  }
  const std::string name = known.xmlName == known.symbol ? "" : " name=" + std::string(known.xmlName);
  refuse("the key is that of the property " + std::string(known.symbol) + " " + textOf(one) + name + " (" +
             to_.where(known.origin) + "); write it as it stands there, or take another key",
         __LINE__);
}

KLV::Key DefinitionReader::keyOf(std::string_view word) const {
  if (const auto key = MetaMetadata::parseRegisterKey(word)) return *key;
  refuse(quoted(word) + " is no key; write 32 hexadecimal digits, dots between octets allowed", __LINE__);
}

KLV::Key DefinitionReader::setKeyOf(std::string_view word) const {
  const KLV::Key key = keyOf(word);
  const bool isLocalSet = key.octet(6) == 0x53 || key.octet(6) == 0x7f;
  if (isUniversalLabel(key) && key.octet(5) == 0x02 && isLocalSet) return key;
  refuse(quoted(word) + " is no key of a set; such a key begins with 060e2b34.0253 or, for any coding, 060e2b34.027f",
         __LINE__);
}

Types::UniversalLabel DefinitionReader::propertyKeyOf(std::string_view word) const {
  const KLV::Key key = keyOf(word);
  if (isUniversalLabel(key) && key.octet(5) == 0x01) return Types::UniversalLabel(key);
  refuse(quoted(word) + " is no key of a property; such a key begins with 060e2b34.01", __LINE__);
}

std::string_view DefinitionReader::nameOf(std::string_view word, const char* what) const {
  if (isName(word)) return word;
  refuse(quoted(word) + " cannot be " + what + "; begin with a letter or '_' and go on with these, digits, '-' and '.'",
         __LINE__);
}

PropertyType DefinitionReader::typeOf(std::string_view word) const {
  std::string whyNot;
  auto type = parsePropertyType(word, whyNot);
  if (!type) refuse(whyNot, __LINE__);
  if (!type->enumeration.empty()) {
    const uint32 place = to_.index_->findEnumeration(to_, type->enumeration);
    if (place != Definitions::Index::kNotFound) type->value = to_.enumerations_[place].base;
  }
  return *type;
}

uint16 DefinitionReader::tagOf(std::string_view word) const {
  if (word == "-") return 0;
  uint32 tag = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), tag, 16);
  if (word.size() != 4 || error != std::errc() || end != word.data() + word.size() || tag == 0) {
    refuse(quoted(word) + " is no local tag; write four hexadecimal digits, or '-' when there is no static one",
           __LINE__);
  }
  if (tag >= Types::LocalTag::kFirstDynamic) {
    refuse(quoted(word) + " is a dynamic local tag, which each file gives by itself; write '-'", __LINE__);
  }
  return static_cast<uint16>(tag);
}

uint32 DefinitionReader::statusOf(std::string_view word) const {
  const auto* const found = std::find(kStatuses.begin(), kStatuses.end(), word);
  if (found != kStatuses.end()) return static_cast<uint32>(found - kStatuses.begin());
  refuse(quoted(word) + " is no status; write required, encoder-required, decoder-required, best-effort or optional",
         __LINE__);
}

std::string_view DefinitionReader::xmlNameOf(std::string_view option, std::string_view symbol,
                                             const char* shape) const {
  if (option.empty()) return symbol;
  if (option.substr(0, kNameOption.size()) == kNameOption) {
    return nameOf(option.substr(kNameOption.size()), "a name in XML");
  }
  refuse(quoted(option) + " is not expected here; " + shape, __LINE__);
}

void DefinitionReader::expectWords(const DictionaryRow& row, std::size_t least, std::size_t most,
                                   const char* shape) const {
  if (row.size() < least) refuse("a word is missing; " + std::string(shape), __LINE__);
  if (row.size() > most) refuse("there are too many words; " + std::string(shape), __LINE__);
}

bool DefinitionReader::mayReplace(Templates::vector<bool>& earlier, uint32 place) const {
  return overlay_ == Definitions::Overlay::kReplace && place < earlier.size() && earlier[place];
}

void DefinitionReader::refuse(const std::string& what, int line) const {
  to_.refuse(here(), what, "Core/Dictionary/DefinitionReader", line);
}

Origin DefinitionReader::here() const {
  if (origins_ != nullptr && line_ <= origins_->size()) return (*origins_)[line_ - 1];
  return {source_, line_};
}

}  // namespace Vantor
