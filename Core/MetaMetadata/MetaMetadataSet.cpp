#include "Core/MetaMetadata/MetaMetadataSet.h"

#include <algorithm>
#include <utility>

#include "Core/MetaMetadata/Dictionary.h"
#include "Core/MetaMetadata/LabelHash.h"
#include "Core/MetaMetadata/MetaElement.h"

namespace Vantor::MetaMetadata {

MetaMetadataSet::MetaMetadataSet(const Dictionary& dictionary, const KLV::Key& key, std::string symbol, bool concrete,
                                 ExtensionAttributes extensionAttributes)
    : dictionary_(dictionary),
      key_(key),
      symbol_(std::move(symbol)),
      concrete_(concrete),
      extensionAttributes_(std::move(extensionAttributes)) {}

const MetaAttribute* MetaMetadataSet::findByLabel(const uint8* label) const {
  const auto wanted = elementIdentity(label);
  const uint32 place = attributesByLabel_.find(wanted.hash(), [&](uint32 candidate) {
    return elementIdentity(attributes_[candidate].metaElement()->key().rawBuffer()) == wanted;
  });
  return place == HashIndex::kNotFound ? nullptr : &attributes_[place];
}

const MetaAttribute* MetaMetadataSet::findAttribute(const Types::UniversalLabel& label) const {
  return findByLabel(label.rawBuffer());
}

const MetaAttribute* MetaMetadataSet::findAttribute(std::string_view name) const {
  return dictionary_.findAttributeByName(*this, name);
}

bool MetaMetadataSet::isNamed(std::string_view name) const {
  return symbol_ == name || extensionAttributes_.isTagName(name);
}

std::string_view MetaMetadataSet::commonName() const { return dictionary_.commonNames().nameOf(*this); }

std::string_view MetaMetadataSet::commonNameOf(const MetaElement& element) const {
  return dictionary_.commonNames().nameOf(*this, element);
}

bool MetaMetadataSet::isOrInherits(const MetaMetadataSet& other) const {
  const auto* set = this;
  while (set != nullptr && set != &other) set = set->parent_;
  return set != nullptr;
}

const MetaAttribute* MetaMetadataSet::findAttributeByStaticTag(uint16 tag) const {
  const uint32 place = attributesByStaticTag_.find(tag, [](uint32) { return true; });
  return place == HashIndex::kNotFound ? nullptr : &attributes_[place];
}

const MetaAttribute* MetaMetadataSet::instanceUIDAttribute() const { return findByLabel(kInstanceUID.rawBuffer()); }

bool MetaMetadataSet::append(const MetaAttribute& attribute) {
  const uint8* label = attribute.metaElement()->key().rawBuffer();
  if (findByLabel(label) != nullptr) return false;
  const auto place = static_cast<uint32>(attributes_.size());
  attributesByLabel_.insert(elementIdentity(label).hash(), place);
  if (attribute.staticLocalTag() != 0) attributesByStaticTag_.insert(attribute.staticLocalTag(), place);
  attributes_.push_back(attribute);
  return true;
}

void MetaMetadataSet::inherit(const MetaMetadataSet& parent, std::size_t ownAttributes) {
  parent_ = &parent;
  attributes_.reserve(parent.attributes_.size() + ownAttributes);
  attributes_ = parent.attributes_;
  attributesByLabel_ = parent.attributesByLabel_;
  attributesByStaticTag_ = parent.attributesByStaticTag_;
  attributesByLabel_.reserve(parent.attributes_.size() + ownAttributes);
}

}  // namespace Vantor::MetaMetadata
