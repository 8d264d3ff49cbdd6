#include "Core/MetaMetadata/Dictionary.h"

#include "Core/MetaMetadata/LabelHash.h"

namespace Vantor::MetaMetadata {

namespace {

template <class T>
T* at(const Templates::vector<T*>& list, uint32 place) {
  return place == HashIndex::kNotFound ? nullptr : list[place];
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

}  // namespace Vantor::MetaMetadata
