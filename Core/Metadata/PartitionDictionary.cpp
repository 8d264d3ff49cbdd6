#include "Core/Metadata/PartitionDictionary.h"

#include <algorithm>

#include "Core/KLV/LocalSet.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Core/Platform/Raise.h"

namespace Vantor {

namespace {

constexpr std::size_t kMostUnlistedTags = 256;  // so that labels find tags, too
constexpr uint32 kFirstDynamicTag = Types::LocalTag::kFirstDynamic;

}  // namespace

PartitionDictionary::PartitionDictionary(SharedPtr<const MetaMetadata::Dictionary> dictionary)
    : dictionary_(std::move(dictionary)) {}

const Types::UniversalLabel* PartitionDictionary::tryFind(uint16 tag) const {
  const auto found = labels_.find(tag);
  return found == labels_.end() ? nullptr : &found->second;
}

const Types::UniversalLabel& PartitionDictionary::find(const Types::LocalTag& tag) const {
  if (const auto* label = tryFind(tag.value())) return *label;
  Exceptions::raise<Exceptions::NotFoundInPrimer>("local tag {} is not in the primer pack", tag.toString(kDottedForm));
}

uint16 PartitionDictionary::tryFindTag(const Types::UniversalLabel& label, uint16 preferredTag) const {
  const auto found = tags_.find(MetaMetadata::comparableKey(label.key()));
  if (found != tags_.end()) return found->second;
  return isFree(preferredTag) ? preferredTag : uint16{0};
}

Types::LocalTag PartitionDictionary::findOrGenerate(const Types::UniversalLabel& label, uint16 preferredTag) {
  const auto found = tags_.find(MetaMetadata::comparableKey(label.key()));
  if (found != tags_.end()) return Types::LocalTag(found->second);
  const uint16 tag = freeTag(preferredTag);
  addPrimerEntry({tag, label.key()});
  return Types::LocalTag(tag);
}

Types::LocalTag PartitionDictionary::unlistedTag(std::size_t index) {
  const std::size_t wanted = std::min(index, kMostUnlistedTags - 1) + 1;
  while (unlisted_.size() < wanted && (unlisted_.empty() || hasFreeDynamicTag())) {
    const uint16 tag = freeTag(0);
    reserved_.insert(tag);
    unlisted_.push_back(tag);
  }
  return Types::LocalTag(unlisted_[std::min(index, unlisted_.size() - 1)]);
}

void PartitionDictionary::reserve(const Types::LocalTag& tag) {
  if (!tag.isStaticLocalTag() && tryFind(tag.value()) == nullptr) reserved_.insert(tag.value());
}

const MetaMetadata::MetaAttribute* PartitionDictionary::findAttribute(const MetaMetadata::MetaMetadataSet& set,
                                                                      uint16 tag) const {
  const auto* label = tryFind(tag);
  return label == nullptr ? set.findAttributeByStaticTag(tag) : set.findAttribute(*label);
}

const MetaMetadata::MetaElement* PartitionDictionary::findElement(uint16 tag) const {
  const auto* label = tryFind(tag);
  return label == nullptr ? dictionary_->findElementByStaticTag(tag) : dictionary_->findElement(*label);
}

bool PartitionDictionary::hasFreeDynamicTag() {
  while (nextDynamicTag_ >= kFirstDynamicTag && !isFree(static_cast<uint16>(nextDynamicTag_))) --nextDynamicTag_;
  return nextDynamicTag_ >= kFirstDynamicTag;
}

uint16 PartitionDictionary::freeTag(uint16 preferredTag) {
  if (preferredTag != 0 && isFree(preferredTag)) return preferredTag;
  if (hasFreeDynamicTag()) return static_cast<uint16>(nextDynamicTag_);
  Exceptions::raise<Exceptions::InvalidLength>("all dynamic local tags of the partition are taken");
}

void PartitionDictionary::addPrimerEntry(const KLV::PrimerEntry& entry) {
  entries_.push_back(entry);
  const bool isNewTag = labels_.emplace(entry.tag, Types::UniversalLabel(entry.label)).second;
  if (isNewTag) tags_.emplace(MetaMetadata::comparableKey(entry.label), entry.tag);
}

void reserveDarkTags(const KLV::Key& key, const uint8* octets, std::size_t size, PartitionDictionary& tags) {
  if (!KLV::isLocalSet(key)) return;
  try {
    for (const auto& item : KLV::readLocalSet(KLV::localSetCoding(key), octets, size)) {
      tags.reserve(Types::LocalTag(item.tag));
    }
  } catch (const Exceptions::BaseException&) {
    // Its key says local set; its value is not one.
  }
}

}  // namespace Vantor
