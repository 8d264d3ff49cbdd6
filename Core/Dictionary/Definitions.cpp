#include "Core/Dictionary/Definitions.h"

#include <memory>
#include <utility>

#include "Core/DataIO/File.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MetaMetadata/LabelHash.h"
#include "Core/Platform/Path.h"

namespace Vantor {

namespace {

using MetaMetadata::DictionaryBuilder;
using MetaMetadata::elementIdentity;
using MetaMetadata::ExtensionAttributes;
using MetaMetadata::groupIdentity;
using MetaMetadata::HashIndex;
using MetaMetadata::hashOfText;

/// The registers of SMPTE, labels included, take one megabyte.
constexpr uint64 kLargestFile = uint64{64} << 20;

std::string textOfFile(const Path& path) {
  DataIO::File::FileDataSource file(path);
  if (file.size() > kLargestFile) {
    Exceptions::raise<Exceptions::InvalidFormat>(
        "{}: a dictionary file has {} octets at most; this is another file, or one to be split",
        Platform::pathToUTF8(path), kLargestFile);
  }
  std::string text(file.size(), '\0');
  file.read(reinterpret_cast<uint8*>(text.data()), text.size());
  return text;
}

template <class Definition>
const Definition* at(const Templates::vector<Definition>& list, uint32 place) {
  return place == HashIndex::kNotFound ? nullptr : &list[place];
}

template <class Definition>
uint32 placeOf(const Types::UniversalLabel& key, const Templates::vector<Definition>& list, const HashIndex& index) {
  const auto wanted = elementIdentity(key.rawBuffer());
  return index.find(wanted.hash(),
                    [&](uint32 place) { return elementIdentity(list[place].key.rawBuffer()) == wanted; });
}
template <class Definition>
uint32 placeOf(std::string_view name, std::string_view Definition::*field, const Templates::vector<Definition>& list,
               const HashIndex& index) {
  return index.find(hashOfText(name), [&](uint32 place) { return list[place].*field == name; });
}

wstring wide(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

template <class Definition>
ExtensionAttributes extensionsOf(const Definition& definition, const ChosenNamespace& chosen) {
  ExtensionAttributes extensions;
  if (definition.tagName != definition.symbol) extensions.set(MetaMetadata::kTagName, wide(definition.tagName));
  if (definition.chosenNamespace != 0) {
    extensions.set(MetaMetadata::kNamespaceURI, wide(chosen.uri));
    extensions.set(MetaMetadata::kDefaultPrefix, wide(chosen.prefix));
  }
  return extensions;
}

}  // namespace

void Definitions::readFile(const Path& path) { readText(textOfFile(path), Platform::pathToUTF8(path)); }

void Definitions::reserve(std::size_t textSize) {
  constexpr std::size_t kTypicalRow = 90;  // octets, in files whose columns are aligned
  const std::size_t rows = textSize / kTypicalRow;
  properties_.reserve(properties_.size() + rows);
  sets_.reserve(sets_.size() + rows / 6);  // a set has six properties of its own, more or less
  propertiesByKey_.reserve(properties_.capacity());
  setsByKey_.reserve(sets_.capacity());
  setsBySymbol_.reserve(sets_.capacity());
}

uint32 Definitions::addSource(std::string name) {
  sources_.push_back(std::move(name));
  registerSources_.push_back(false);
  return static_cast<uint32>(sources_.size() - 1);
}

uint32 Definitions::addRegister(std::string name) {
  const uint32 place = addSource(std::move(name));
  registerSources_[place] = true;
  return place;
}

void Definitions::addMeanings(DictionaryBuilder& builder) const {
  Templates::vector<const MetaMetadata::Enumeration*> made;
  for (const auto& definition : enumerations_) {
    MetaMetadata::NamedNumbers numbers;
    for (const auto& value : definition.values) numbers.emplace_back(value.number, value.name);
    made.push_back(&builder.addEnumeration(definition.name, numbers));
  }
  for (const auto& property : properties_) {
    const auto& type = property.type;
    if (!type.enumeration.empty()) builder.setEnumeration(property.key, *made[placeOfEnumeration(type.enumeration)]);
    if (!type.target.empty()) builder.setTarget(property.key, type.target);
  }
  for (const auto& label : labels_) builder.addLabel(label.key, label.symbol, label.name);
  for (const auto& common : commonNames_) {
    const auto& set = sets_[common.set].key;
    if (!common.property) builder.addCommonName(set, common.name);
    if (common.property) builder.addCommonName(set, properties_[*common.property].key, common.name);
  }
}

SharedPtr<const MetaMetadata::Dictionary> Definitions::makeDictionary(MetaMetadata::Vocabulary vocabulary) {
  check();
  DictionaryBuilder builder(vocabulary);
  builder.reserve(properties_.size(), sets_.size());
  for (const auto& property : properties_) {
    builder.addElement(property.key, property.symbol, property.type.dataType(),
                       extensionsOf(property, namespaces_[property.chosenNamespace]));
  }
  for (const auto& set : sets_) {
    builder.addSet(set.key, set.symbol, set.parent, set.isConcrete,
                   extensionsOf(set, namespaces_[set.chosenNamespace]));
    for (const auto& use : set.properties) {
      builder.addAttribute(properties_[use.property].key, use.staticLocalTag, use.requiredStatus);
    }
  }
  addMeanings(builder);
  builder.setLabelSource(appendBuiltInLabels);
  return builder.build();
}

const SetDefinition* Definitions::findSet(const KLV::Key& key) const { return at(sets_, placeOfSet(key)); }
const SetDefinition* Definitions::findSet(std::string_view symbol) const { return at(sets_, placeOfSet(symbol)); }
const PropertyDefinition* Definitions::findProperty(const Types::UniversalLabel& key) const {
  return at(properties_, placeOfProperty(key));
}
const EnumerationDefinition* Definitions::findEnumeration(std::string_view name) const {
  return at(enumerations_, placeOfEnumeration(name));
}
const LabelDefinition* Definitions::findLabel(const Types::UniversalLabel& key) const {
  return at(labels_, placeOfLabel(key));
}
const LabelDefinition* Definitions::findLabel(std::string_view symbol) const {
  return at(labels_, placeOfLabel(symbol));
}

uint32 Definitions::placeOfSet(const KLV::Key& key) const {
  const auto wanted = groupIdentity(key.rawBuffer());
  return setsByKey_.find(wanted.hash(),
                         [&](uint32 place) { return groupIdentity(sets_[place].key.rawBuffer()) == wanted; });
}
uint32 Definitions::placeOfSet(std::string_view symbol) const {
  return placeOf(symbol, &SetDefinition::symbol, sets_, setsBySymbol_);
}
uint32 Definitions::placeOfProperty(const Types::UniversalLabel& key) const {
  return placeOf(key, properties_, propertiesByKey_);
}
uint32 Definitions::placeOfEnumeration(std::string_view name) const {
  return placeOf(name, &EnumerationDefinition::name, enumerations_, enumerationsByName_);
}
uint32 Definitions::placeOfLabel(const Types::UniversalLabel& key) const { return placeOf(key, labels_, labelsByKey_); }
uint32 Definitions::placeOfLabel(std::string_view symbol) const {
  return placeOf(symbol, &LabelDefinition::symbol, labels_, labelsBySymbol_);
}

void Definitions::enterSet(uint32 place) {
  setsByKey_.insert(groupIdentity(sets_[place].key.rawBuffer()).hash(), place);
  setsBySymbol_.insert(hashOfText(sets_[place].symbol), place);
}
void Definitions::enterProperty(uint32 place) {
  propertiesByKey_.insert(elementIdentity(properties_[place].key.rawBuffer()).hash(), place);
}
void Definitions::enterEnumeration(uint32 place) {
  enumerationsByName_.insert(hashOfText(enumerations_[place].name), place);
}
void Definitions::enterLabel(uint32 place) {
  labelsByKey_.insert(elementIdentity(labels_[place].key.rawBuffer()).hash(), place);
  labelsBySymbol_.insert(hashOfText(labels_[place].symbol), place);
}

std::string_view Definitions::keep(std::string text) {
  texts_.push_back(std::make_unique<const std::string>(std::move(text)));
  return *texts_.back();
}

// Hosts add definitions with origins of their own making, too.
std::string Definitions::sourceOf(const Origin& origin) const {
  return origin.source < sources_.size() ? sources_[origin.source] : "unknown source";
}

std::string Definitions::where(const Origin& origin) const {
  return sourceOf(origin) + ":" + std::to_string(origin.line);
}

std::string Definitions::adviceFor(const Origin& origin, const char* advice) const {
  const bool isRegister = origin.source < registerSources_.size() && registerSources_[origin.source];
  if (isRegister) return "; the register cannot be used as it is, take another edition";
  return advice == nullptr ? std::string() : std::string("; ") + advice;
}

}  // namespace Vantor
