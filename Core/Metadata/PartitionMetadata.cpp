#include "Core/Metadata/PartitionMetadata.h"

#include <algorithm>
#include <utility>

#include "Core/KLV/Keys.h"
#include "Core/KLV/LocalSet.h"
#include "Core/Metadata/ElementFactory.h"
#include "Core/Metadata/NameSuggestions.h"
#include "Core/Metadata/SetReader.h"
#include "Core/Metadata/SimpleElement.h"
#include "Core/Metadata/StructuralMetadataKeys.h"
#include "Core/Platform/Raise.h"
#include "Core/Types/Factories.h"

namespace Vantor {

namespace {

using Exceptions::InvalidFormat;
using Exceptions::raise;

bool isInstanceUID(const KLV::LocalSetItem& item, const PartitionDictionary& tags) {
  if (item.size != Types::UUID::kSize) return false;
  const auto* label = tags.tryFind(item.tag);
  using MetaMetadata::MetaMetadataSet;
  if (label == nullptr) return item.tag == MetaMetadataSet::kInstanceUIDTag;
  return label->key().matches(MetaMetadataSet::kInstanceUID);
}

/// The InstanceUID in a dark set.
std::optional<Types::UUID> findInstanceUID(const Templates::vector<KLV::LocalSetItem>& items,
                                           const PartitionDictionary& tags) {
  for (const auto& item : items) {
    if (isInstanceUID(item, tags)) return Types::UUID(item.value);
  }
  return std::nullopt;
}

template <class List, class Predicate>
void eraseIf(List& list, Predicate predicate) {
  list.erase(std::remove_if(list.begin(), list.end(), predicate), list.end());
}

/// Whether the octets are items with 2-byte tags and lengths.
bool isLocalSet(const uint8* value, std::size_t size) {
  try {
    KLV::readLocalSet(KLV::LocalSetCoding::kTwoByteLengths, value, size);
    return true;
  } catch (const Exceptions::ParseError&) {
    return false;
  }
}

}  // namespace

PartitionMetadata::PartitionMetadata(SharedPtr<const MetaMetadata::Dictionary> dictionary)
    : dictionary_(std::move(dictionary)) {}

PartitionMetadata::~PartitionMetadata() = default;

const PartitionMetadata::Sets& PartitionMetadata::find(const KLV::Key& key) const {
  static const Sets none;
  const auto found = byKey_.find(key.normalised());
  if (found == byKey_.end()) return none;
  if (hasRemoved_.load(std::memory_order_acquire)) {
    const std::lock_guard<std::mutex> lock(compacting_);
    dropRemoved(found->second);
  }
  return found->second.sets;
}

MetadataSet* PartitionMetadata::preface() const {
  const auto& prefaces = find(Structural::StructuralMetadataKeys::preface());
  return prefaces.empty() ? nullptr : prefaces.front();
}

const PartitionMetadata::Sets& PartitionMetadata::findByInstanceUID(const Types::UUID& instanceUID) const {
  static const Sets none;
  const auto found = byInstanceUID_.find(instanceUID);
  return found == byInstanceUID_.end() ? none : found->second;
}

MetadataSet* PartitionMetadata::createMetadataSet(const KLV::Key& key) {
  const auto* definition = dictionary_.dictionary()->findSet(key);
  auto set = std::make_unique<MetadataSet>(key, definition);
  if (definition != nullptr) {
    set->createUnsetElements();
    if (const auto* attribute = definition->instanceUIDAttribute()) {
      setDecodedValue(set->createElement(*attribute),
                      std::make_unique<Types::UUID>(Types::Factories::UID::generateUUID()));
    }
  }
  return addMetadataSet(std::move(set));
}

MetadataSet& PartitionMetadata::createMetadataSet(std::string_view name) {
  const auto definitions = dictionary_.dictionary()->findSetsByName(name);
  if (definitions.empty()) raise<InvalidFormat>("the dictionary has no set '{}'{}", name, suggestSet(*this, name));
  const auto concrete = std::find_if(definitions.begin(), definitions.end(),
                                     [](const auto* definition) { return definition->isConcrete(); });
  if (concrete == definitions.end()) raise<InvalidFormat>("{} is abstract: files hold no such sets", name);
  return *createMetadataSet((*concrete)->key());
}

MetadataSet* PartitionMetadata::addMetadataSet(auto_ptr<MetadataSet> set) {
  MetadataSet* added = set.get();
  added->setPartition(this);
  added->ordinal_ = nextOrdinal_++;
  entries_.emplace_back(std::move(set));
  sets_.push_back(added);
  byKey_[added->key().normalised()].sets.push_back(added);
  instanceUIDChanged(*added, nullptr, added->instanceUID());
  return added;
}

void PartitionMetadata::addDarkMetadataSet(auto_ptr<DarkMetadataSet> set) {
  darkSets_.push_back(set.get());
  entries_.emplace_back(std::move(set));
}

std::vector<PartitionMetadata::Entry> PartitionMetadata::releaseEntries() {
  compacted();
  sets_.clear();
  darkSets_.clear();
  byKey_.clear();
  byInstanceUID_.clear();
  return std::exchange(entries_, {});
}

void PartitionMetadata::remove(MetadataSet& set) {
  if (set.partition_ != this) return;
  instanceUIDChanged(set, set.instanceUID(), nullptr);
  byKey_[set.key().normalised()].hasRemoved = true;
  set.setPartition(nullptr);
  hasRemoved_.store(true, std::memory_order_release);
}

void PartitionMetadata::remove(DarkMetadataSet& set) {
  set.isRemoved_ = true;
  hasRemoved_.store(true, std::memory_order_release);
}

void PartitionMetadata::dropRemoved(KeySets& sets) {
  if (!sets.hasRemoved) return;
  eraseIf(sets.sets, [](const MetadataSet* set) { return set->partition_ == nullptr; });
  sets.hasRemoved = false;
}

void PartitionMetadata::compact() const {
  const std::lock_guard<std::mutex> lock(compacting_);
  if (!hasRemoved_.load(std::memory_order_relaxed)) return;
  const auto isRemovedSet = [](const MetadataSet* set) { return set->partition_ == nullptr; };
  const auto isRemovedDark = [](const DarkMetadataSet* set) { return set->isRemoved_; };
  for (const MetadataSet* set : sets_) {
    if (isRemovedSet(set)) dropRemoved(byKey_.at(set->key().normalised()));
  }
  eraseIf(sets_, isRemovedSet);
  eraseIf(darkSets_, isRemovedDark);
  // Last, for this destroys the sets.
  eraseIf(entries_, [&](const Entry& entry) {
    const auto* set = std::get_if<auto_ptr<MetadataSet>>(&entry);
    return set != nullptr ? isRemovedSet(set->get()) : isRemovedDark(std::get<auto_ptr<DarkMetadataSet>>(entry).get());
  });
  hasRemoved_.store(false, std::memory_order_release);
}

void PartitionMetadata::instanceUIDChanged(MetadataSet& set, const Types::UUID* before, const Types::UUID* after) {
  const auto byOrdinal = [](const MetadataSet* left, const MetadataSet* right) {
    return left->ordinal_ < right->ordinal_;
  };
  if (before != nullptr) {
    const auto found = byInstanceUID_.find(*before);
    auto& sets = found->second;
    sets.erase(std::lower_bound(sets.begin(), sets.end(), &set, byOrdinal));
    if (sets.empty()) byInstanceUID_.erase(found);
  }
  if (after != nullptr) {
    auto& sets = byInstanceUID_[*after];
    sets.insert(std::lower_bound(sets.begin(), sets.end(), &set, byOrdinal), &set);
  }
}

std::size_t PartitionMetadata::addKLV(const KLV::Key& key, uint8 berOctets, const uint8* value, std::size_t size,
                                      uint64 offset) {
  const auto* definition = definitionOf(key, value, size);
  if (definition != nullptr) return addKnownSet(key, *definition, berOctets, value, size, offset);
  if (KLV::isLocalSet(key)) {
    if (const auto properties = addDarkParsedGroup(key, berOctets, value, size)) return *properties;
  }
  addDarkMetadataSet(std::make_unique<DarkMetadataSet>(key, berOctets, KLV::Value(Bytes(value, value + size))));
  return 0;
}

const MetaMetadata::MetaMetadataSet* PartitionMetadata::definitionOf(const KLV::Key& key, const uint8* value,
                                                                     std::size_t size) const {
  const bool isOwn = KLV::isSwappedUUID(key);
  const auto* definition = isOwn || KLV::isLocalSet(key) ? dictionary_.dictionary()->findSet(key) : nullptr;
  // The key of a maker's own set does not show whether it is a local set.
  return definition == nullptr || !isOwn || isLocalSet(value, size) ? definition : nullptr;
}

std::size_t PartitionMetadata::addKnownSet(const KLV::Key& key, const MetaMetadata::MetaMetadataSet& definition,
                                           uint8 berOctets, const uint8* value, std::size_t size, uint64 offset) {
  std::size_t properties = 0;
  auto set = std::make_unique<MetadataSet>(key, &definition);
  set->setBerLength(berOctets);
  try {
    SetReader reader(*set, dictionary_);
    const auto items = KLV::readLocalSet(KLV::localSetCoding(key), value, size, offset);
    for (const auto& item : items) reader.read(item);
    properties = items.size();
  } catch (const Exceptions::ParseError& error) {
    Exceptions::raise<Exceptions::ParseError>("set {}: {}", definition.symbol(), error.message());
  }
  addMetadataSet(std::move(set));
  return properties;
}

std::optional<std::size_t> PartitionMetadata::addDarkParsedGroup(const KLV::Key& key, uint8 berOctets,
                                                                 const uint8* value, std::size_t size) {
  try {
    const auto items = KLV::readLocalSet(KLV::localSetCoding(key), value, size);
    addMetadataSet(std::make_unique<DarkParsedGroup>(key, berOctets, Bytes(value, value + size),
                                                     findInstanceUID(items, dictionary_)));
    return items.size();
  } catch (const Exceptions::ParseError&) {
    return std::nullopt;  // an unknown key may look like that of a local set
  }
}

}  // namespace Vantor
