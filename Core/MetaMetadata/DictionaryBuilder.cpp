#include "Core/MetaMetadata/DictionaryBuilder.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "Core/KLV/Keys.h"
#include "Core/MetaMetadata/LabelHash.h"
#include "Core/Platform/Numbers.h"
#include "Core/Platform/Raise.h"
#include "Core/Platform/Strings.h"

namespace Vantor::MetaMetadata {

namespace {

using Exceptions::InvalidFormat;
using Exceptions::raise;

constexpr uint8 kAnyCoding = 0x7f;

SharedPtr<const ExtensionAttributes> sharedNames(const Namespace& names) {
  auto attributes = std::make_shared<ExtensionAttributes>();
  attributes->set(kNamespaceURI, wstring(names.uri)).set(kDefaultPrefix, wstring(names.prefix));
  return attributes;
}

/// The tag name of a definition.
wstring tagNameOf(std::string_view symbol, const ExtensionAttributes& custom) {
  return custom.has(kTagName) ? custom.get(kTagName) : wstring(symbol.begin(), symbol.end());
}

ExtensionAttributes withDefaults(const SharedPtr<const ExtensionAttributes>& names, wstring tagName,
                                 const ExtensionAttributes& custom) {
  ExtensionAttributes extensions(names);
  extensions.set(kTagName, std::move(tagName));
  extensions.setAll(custom);
  return extensions;
}

std::string textOf(const Types::UniversalLabel& label) { return Utils::wstringToString(label.toString(kUrnForm)); }

template <class List>
uint32 sizeOf(const List& list) {
  return static_cast<uint32>(list.size());
}

}  // namespace

struct DictionaryBuilder::State {
  explicit State(Vocabulary vocabulary)
      : vocabulary(vocabulary),
        setNames(sharedNames(setNamespace(vocabulary))),
        elementNames(sharedNames(elementNamespace(vocabulary, {}))),
        identifierNames(sharedNames(kLegacyElements)) {}

  struct OwnAttribute {
    uint32 element;
    uint32 requiredStatus;
    uint16 staticLocalTag;
    ExtensionAttributes* custom;  // null for a definition without any
  };
  struct PendingSet {
    std::string parent;
    std::size_t firstAttribute;
    bool complete;
  };

  uint32 findElement(const uint8* label) const;
  uint32 findParent(uint32 set) const;
  const ExtensionAttributes* extensionsOf(const OwnAttribute& attribute, std::size_t place);
  void complete(uint32 set);
  void appendOwnAttributes(uint32 set);
  void indexStaticTags();

  SharedPtr<Dictionary> dictionary{new Dictionary};
  Vocabulary vocabulary;
  SharedPtr<const ExtensionAttributes> setNames;
  SharedPtr<const ExtensionAttributes> elementNames;
  SharedPtr<const ExtensionAttributes> identifierNames;
  Templates::vector<PendingSet> sets;                           // beside dictionary->ownedSets_
  Templates::vector<MetaElement*> elements;                     // beside dictionary->elements_
  Templates::vector<OwnAttribute> attributes;                   // of all sets, each set's in one run
  Templates::vector<const ExtensionAttributes*> schemaIndexes;  // [n] holds the place n + 1
};

DictionaryBuilder::DictionaryBuilder(Vocabulary vocabulary) : state_(std::make_unique<State>(vocabulary)) {}
DictionaryBuilder::DictionaryBuilder(DictionaryBuilder&&) noexcept = default;
DictionaryBuilder& DictionaryBuilder::operator=(DictionaryBuilder&&) noexcept = default;
DictionaryBuilder::~DictionaryBuilder() = default;

void DictionaryBuilder::reserve(std::size_t elements, std::size_t sets) {
  auto& dictionary = *state_->dictionary;
  dictionary.elements_.reserve(elements);
  dictionary.elementsByLabel_.reserve(elements);
  dictionary.sets_.reserve(sets);
  dictionary.ownedSets_.reserve(sets);
  dictionary.setsByKey_.reserve(sets);
  dictionary.setsBySymbol_.reserve(sets);
  state_->sets.reserve(sets);
  state_->elements.reserve(elements);
  state_->attributes.reserve(elements);
}

void DictionaryBuilder::addElement(std::string_view key, std::string_view symbol, DataType type,
                                   const ExtensionAttributes& extensionAttributes) {
  addElement(Types::UniversalLabel(registerKey(key)), symbol, type, extensionAttributes);
}

void DictionaryBuilder::addElement(const Types::UniversalLabel& label, std::string_view symbol, DataType type,
                                   const ExtensionAttributes& extensionAttributes) {
  auto& dictionary = *state_->dictionary;
  const uint32 known = state_->findElement(label.rawBuffer());
  if (known != HashIndex::kNotFound && dictionary.elements_[known]->key() == label) return;

  wstring tagName = tagNameOf(symbol, extensionAttributes);
  const auto& names = isIdentifierName(tagName) ? state_->identifierNames : state_->elementNames;
  auto extensions = withDefaults(names, std::move(tagName), extensionAttributes);
  MetaElement* element =
      type.itemType == Types::Identifiers::kNone
          ? &dictionary.simpleElements_.emplace_back(label, std::string(symbol), type.type, std::move(extensions))
          : &dictionary.collectionElements_.emplace_back(label, std::string(symbol), type.type, type.itemType,
                                                         std::move(extensions));
  dictionary.elementsByLabel_.insert(elementIdentity(label.rawBuffer()).hash(), sizeOf(dictionary.elements_));
  dictionary.elements_.push_back(element);
  state_->elements.push_back(element);
}

void DictionaryBuilder::addSet(std::string_view key, std::string_view symbol, std::string_view parent, bool isConcrete,
                               const ExtensionAttributes& extensionAttributes) {
  addSet(registerKey(key), symbol, parent, isConcrete, extensionAttributes);
}

void DictionaryBuilder::addSet(const KLV::Key& key, std::string_view symbol, std::string_view parent, bool isConcrete,
                               const ExtensionAttributes& extensionAttributes) {
  auto& dictionary = *state_->dictionary;
  constexpr auto kWritten = static_cast<uint8>(KLV::LocalSetCoding::kTwoByteLengths);
  const bool isOpen = key.octet(KLV::Key::kCodingOctet) == kAnyCoding && !KLV::isSwappedUUID(key);
  const KLV::Key written = isOpen ? key.withOctet(KLV::Key::kCodingOctet, kWritten) : key;

  dictionary.setsByKey_.insert(groupIdentity(written.rawBuffer()).hash(), sizeOf(dictionary.sets_));
  dictionary.setsBySymbol_.insert(hashOfText(symbol), sizeOf(dictionary.sets_));
  dictionary.ownedSets_.emplace_back(
      new MetaMetadataSet(dictionary, written, std::string(symbol), isConcrete,
                          withDefaults(state_->setNames, tagNameOf(symbol, extensionAttributes), extensionAttributes)));
  dictionary.sets_.push_back(dictionary.ownedSets_.back().get());
  state_->sets.push_back({std::string(parent), state_->attributes.size(), false});
}

void DictionaryBuilder::addAttribute(std::string_view elementKey, uint16 staticLocalTag, uint32 requiredStatus,
                                     const ExtensionAttributes& extensionAttributes) {
  addAttribute(Types::UniversalLabel(registerKey(elementKey)), staticLocalTag, requiredStatus, extensionAttributes);
}

void DictionaryBuilder::addAttribute(const Types::UniversalLabel& elementLabel, uint16 staticLocalTag,
                                     uint32 requiredStatus, const ExtensionAttributes& extensionAttributes) {
  if (state_->sets.empty()) {
    raise<InvalidFormat>("a property before the first set: {}", textOf(elementLabel));
  }
  const uint32 element = state_->findElement(elementLabel.rawBuffer());
  if (element == HashIndex::kNotFound) {
    raise<InvalidFormat>("set {} lists a property that is not defined: {}", state_->dictionary->sets_.back()->symbol(),
                         textOf(elementLabel));
  }
  auto& extensions = state_->dictionary->attributeExtensions_;
  ExtensionAttributes* custom = extensionAttributes.isEmpty() ? nullptr : &extensions.emplace_back(extensionAttributes);
  state_->attributes.push_back({element, requiredStatus, staticLocalTag, custom});
}

const Enumeration& DictionaryBuilder::addEnumeration(std::string_view name, const NamedNumbers& numbers) {
  return state_->dictionary->enumerations_.emplace_back(name, numbers);
}

MetaElement& DictionaryBuilder::definedElement(const Types::UniversalLabel& label) {
  const uint32 element = state_->findElement(label.rawBuffer());
  if (element == HashIndex::kNotFound) raise<InvalidFormat>("a property that is not defined: {}", textOf(label));
  return *state_->elements[element];
}

const MetaMetadataSet& DictionaryBuilder::definedSet(const KLV::Key& key) const {
  const auto* set = state_->dictionary->findSet(key);
  if (set == nullptr) raise<InvalidFormat>("a set that is not defined: {}", registerText(key));
  return *set;
}

void DictionaryBuilder::addCommonName(const KLV::Key& set, std::string_view name) {
  state_->dictionary->commonNames_.add({&definedSet(set), nullptr, std::string(name)});
}

void DictionaryBuilder::addCommonName(const KLV::Key& set, const Types::UniversalLabel& elementLabel,
                                      std::string_view name) {
  state_->dictionary->commonNames_.add({&definedSet(set), &definedElement(elementLabel), std::string(name)});
}

void DictionaryBuilder::setEnumeration(const Types::UniversalLabel& elementLabel, const Enumeration& enumeration) {
  definedElement(elementLabel).enumeration_ = &enumeration;
}

void DictionaryBuilder::setTarget(const Types::UniversalLabel& elementLabel, std::string_view set) {
  auto& element = definedElement(elementLabel);
  element.target_ = state_->dictionary->findSetBySymbol(set);
  if (element.target_ == nullptr) {
    raise<InvalidFormat>("{} refers to {}, which is not defined", element.symbol(), set);
  }
}

void DictionaryBuilder::addLabel(const Types::UniversalLabel& label, std::string_view symbol, std::string_view name) {
  auto& dictionary = *state_->dictionary;
  dictionary.labelsByKey_.insert(elementIdentity(label.rawBuffer()).hash(), sizeOf(dictionary.labels_));
  dictionary.labels_.push_back({label, std::string(symbol), std::string(name)});
}

void DictionaryBuilder::setLabelSource(LabelSource source) { state_->dictionary->otherLabels_ = source; }

SharedPtr<const Dictionary> DictionaryBuilder::build() {
  for (uint32 set = 0; set < state_->sets.size(); ++set) state_->complete(set);
  state_->indexStaticTags();
  return std::exchange(state_, std::make_unique<State>(state_->vocabulary))->dictionary;
}

uint32 DictionaryBuilder::State::findElement(const uint8* label) const {
  const auto& elements = dictionary->elements_;
  const auto wanted = elementIdentity(label);
  const uint32 exact = dictionary->elementsByLabel_.find(wanted.hash(), [&](uint32 candidate) {
    return std::equal(label, label + KLV::Key::kSize, elements[candidate]->key().rawBuffer());
  });
  if (exact != HashIndex::kNotFound) return exact;
  return dictionary->elementsByLabel_.find(wanted.hash(), [&](uint32 candidate) {
    return elementIdentity(elements[candidate]->key().rawBuffer()) == wanted;
  });
}

uint32 DictionaryBuilder::State::findParent(uint32 set) const {
  const auto& parent = sets[set].parent;
  if (parent.empty()) return HashIndex::kNotFound;
  const uint32 place = dictionary->setsBySymbol_.find(
      hashOfText(parent), [&](uint32 candidate) { return dictionary->sets_[candidate]->symbol() == parent; });
  if (place == HashIndex::kNotFound) {
    raise<InvalidFormat>("set {} inherits from {}, which is not defined", dictionary->sets_[set]->symbol(), parent);
  }
  return place;
}

void DictionaryBuilder::State::complete(uint32 set) {
  Templates::vector<uint32> waiting;
  for (uint32 next = set; next != HashIndex::kNotFound && !sets[next].complete; next = findParent(next)) {
    if (waiting.size() == sets.size()) {
      raise<InvalidFormat>("set {} inherits from itself", dictionary->sets_[set]->symbol());
    }
    waiting.push_back(next);
  }
  for (; !waiting.empty(); waiting.pop_back()) appendOwnAttributes(waiting.back());
}

void DictionaryBuilder::State::appendOwnAttributes(uint32 set) {
  auto& definition = *dictionary->ownedSets_[set];
  const std::size_t first = sets[set].firstAttribute;
  const std::size_t last = set + 1 < sets.size() ? sets[set + 1].firstAttribute : attributes.size();
  const uint32 parent = findParent(set);
  if (parent != HashIndex::kNotFound) definition.inherit(*dictionary->sets_[parent], last - first);
  for (std::size_t i = first; i < last; ++i) {
    const auto& own = attributes[i];
    definition.append(MetaAttribute(dictionary->elements_[own.element], own.requiredStatus, own.staticLocalTag,
                                    extensionsOf(own, definition.attributes().size())));
  }
  sets[set].complete = true;
}

const ExtensionAttributes* DictionaryBuilder::State::extensionsOf(const OwnAttribute& attribute, std::size_t place) {
  if (attribute.custom != nullptr) {
    if (!attribute.custom->has(kSchemaIndex)) attribute.custom->set(kSchemaIndex, Platform::toDecimal(place + 1));
    return attribute.custom;
  }
  while (schemaIndexes.size() <= place) {
    auto& extensions = dictionary->attributeExtensions_.emplace_back();
    schemaIndexes.push_back(&extensions.set(kSchemaIndex, Platform::toDecimal(schemaIndexes.size() + 1)));
  }
  return schemaIndexes[place];
}

// The order of the elements decides, not that of the sets: both orders are the caller's.
void DictionaryBuilder::State::indexStaticTags() {
  Templates::vector<std::pair<uint16, uint32>> tags;
  for (const auto& attribute : attributes) {
    if (attribute.staticLocalTag != 0) tags.emplace_back(attribute.staticLocalTag, attribute.element);
  }
  std::sort(tags.begin(), tags.end());
  dictionary->elementsByStaticTag_.reserve(tags.size());
  for (const auto& [tag, element] : tags) dictionary->elementsByStaticTag_.insert(tag, element);
}

}  // namespace Vantor::MetaMetadata
