#include "XMLBuilder/BaseFacts.h"

#include <algorithm>

#include "Core/MetaMetadata/MetaElement.h"

namespace Vantor::XML2Partition {

bool BaseFacts::hasTarget(const Types::UUID& instanceUID) {
  if (!base_->findByInstanceUID(instanceUID).empty()) return isPart_;
  if (!targets_) {
    std::vector<Types::UUID> targets;
    for (const MetadataSet* set : base_->sets()) {
      for (const Element& property : *set) property.appendTargets({true}, targets);
      for (auto at = set->invalidBegin(); at != set->invalidEnd(); ++at) at->appendTargets({true}, targets);
    }
    targets_.emplace(targets.begin(), targets.end());
  }
  return targets_->count(instanceUID) != 0;
}

bool BaseFacts::hasDarkSet(const KLV::Key& key, const Bytes& octets) {
  if (!dark_) {
    dark_.emplace();
    for (auto at = base_->darkBegin(); at != base_->darkEnd(); ++at) {
      const auto& value = (*at)->value();
      dark_->emplace((*at)->key(), Bytes(value.rawBuffer(), value.rawBuffer() + value.serializedSize()));
    }
  }
  return dark_->count({key, octets}) != 0;
}

bool BaseFacts::takeWithoutInstanceUID(const std::string& name) {
  if (!withoutInstanceUID_) {
    withoutInstanceUID_.emplace();
    for (const MetadataSet* set : base_->sets()) {
      if (set->instanceUID() == nullptr) ++(*withoutInstanceUID_)[set->name()];
    }
  }
  auto& left = (*withoutInstanceUID_)[name];
  if (left == 0) return false;
  --left;
  return true;
}

BaseFacts::PropertyName BaseFacts::nameOf(const MetaMetadata::MetaElement& definition) {
  return {definition.key().key().normalised(), 0};
}

BaseFacts::PropertyName BaseFacts::nameOf(uint16 tag, const PartitionDictionary& tags) {
  const auto* label = tags.tryFind(tag);
  return label == nullptr ? PropertyName({}, tag) : PropertyName(label->key().normalised(), 0);
}

BaseFacts::PropertyName BaseFacts::nameOf(const Element& property, const PartitionDictionary& tags) {
  const auto& attribute = property.metaAttribute();
  if (const auto* definition = attribute.metaElement()) return nameOf(*definition);
  return nameOf(static_cast<const MetaMetadata::UnknownAttribute&>(attribute).localTag().value(), tags);
}

BaseFacts::PropertyCounts BaseFacts::extensionsOf(const MetadataSet& set) const {
  PropertyCounts counts;
  const auto* instanceUID = set.instanceUID();
  const auto& sets = instanceUID == nullptr ? base_->find(set.key()) : base_->findByInstanceUID(*instanceUID);
  for (const MetadataSet* one : sets) {
    if (instanceUID == nullptr && one->instanceUID() != nullptr) continue;
    PropertyCounts own;
    for (auto at = one->invalidBegin(); at != one->invalidEnd(); ++at) ++own[nameOf(*at, base_->partitionDictionary())];
    for (const auto& [name, count] : own) counts[name] = std::max(counts[name], count);
  }
  return counts;
}

}  // namespace Vantor::XML2Partition
