#include "Core/MetaMetadata/Dictionary.h"

#include "Core/MetaMetadata/LabelHash.h"
#include "Core/Platform/Strings.h"

namespace Vantor::MetaMetadata {

namespace {

template <class T>
T* at(const Templates::vector<T*>& list, uint32 place) {
  return place == HashIndex::kNotFound ? nullptr : list[place];
}

template <class Definitions>
void indexByName(const Definitions& definitions, HashIndex& index) {
  index.reserve(definitions.size());
  for (uint32 place = 0; place < definitions.size(); ++place) {
    const auto& symbol = definitions[place]->symbol();
    const auto tagName = Utils::wstringToString(definitions[place]->extensionAttribute(kTagName));
    index.insert(hashOfText(symbol), place);
    if (!tagName.empty() && tagName != symbol) index.insert(hashOfText(tagName), place);
  }
}

}  // namespace

Dictionary::Dictionary() = default;
Dictionary::~Dictionary() = default;

const MetaMetadataSet* Dictionary::findSet(const KLV::Key& key) const {
  const auto wanted = groupIdentity(key.rawBuffer());
  return at(sets_, setsByKey_.find(wanted.hash(), [&](uint32 candidate) {
    return groupIdentity(sets_[candidate]->key().rawBuffer()) == wanted;
  }));
}

const MetaMetadataSet* Dictionary::findSetBySymbol(std::string_view symbol) const {
  return at(sets_, setsBySymbol_.find(hashOfText(symbol),
                                      [&](uint32 candidate) { return sets_[candidate]->symbol() == symbol; }));
}

const MetaElement* Dictionary::findElement(const Types::UniversalLabel& label) const {
  const auto wanted = elementIdentity(label.rawBuffer());
  return at(elements_, elementsByLabel_.find(wanted.hash(), [&](uint32 candidate) {
    return elementIdentity(elements_[candidate]->key().rawBuffer()) == wanted;
  }));
}

const MetaElement* Dictionary::findElementByStaticTag(uint16 tag) const {
  return at(elements_, elementsByStaticTag_.find(tag, [](uint32) { return true; }));
}

const Label* Dictionary::findLabel(const Types::UniversalLabel& label) const {
  const auto wanted = elementIdentity(label.rawBuffer());
  const uint32 place = labelsByKey_.find(
      wanted.hash(), [&](uint32 candidate) { return elementIdentity(labels_[candidate].key.rawBuffer()) == wanted; });
  return place == HashIndex::kNotFound ? nullptr : &labels_[place];
}

const LabelIndex& Dictionary::labels() const {
  std::call_once(labelsIndexed_, [this] {
    LabelIndex::Labels labels;
    for (const auto& label : labels_) labels.push_back({label.key, label.symbol, label.name});
    if (otherLabels_ != nullptr) otherLabels_(labels);
    labelIndex_ = std::make_unique<const LabelIndex>(labels);
  });
  return *labelIndex_;
}

void Dictionary::indexNames() const {
  std::call_once(namesIndexed_, [this] {
    indexByName(sets_, setsByName_);
    indexByName(elements_, elementsByName_);
  });
}

std::vector<const MetaMetadataSet*> Dictionary::findSetsByName(std::string_view name) const {
  indexNames();
  std::vector<const MetaMetadataSet*> found;
  setsByName_.find(hashOfText(name), [&](uint32 candidate) {
    if (sets_[candidate]->isNamed(name)) found.push_back(sets_[candidate]);
    return false;
  });
  const auto* common = found.empty() ? commonNames_.findSet(name) : nullptr;
  if (common != nullptr) found.push_back(common);
  return found;
}

const MetaAttribute* Dictionary::findAttributeByName(const MetaMetadataSet& set, std::string_view name) const {
  indexNames();
  const MetaAttribute* found = nullptr;
  elementsByName_.find(hashOfText(name), [&](uint32 candidate) {
    const auto& element = *elements_[candidate];
    const auto* attribute = element.isNamed(name) ? set.findAttribute(element.key()) : nullptr;
    if (attribute == nullptr || attribute->metaElement() != &element) return false;
    if (found == nullptr || element.symbol() == name) found = attribute;
    return element.symbol() == name;
  });
  return found != nullptr ? found : commonNames_.findAttribute(set, name);
}

}  // namespace Vantor::MetaMetadata
