#include "Core/Comparison/SetPairing.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "Core/Comparison/FirstComeQueue.h"
#include "Core/Comparison/PropertyIdentity.h"
#include "Core/Comparison/PropertyPairing.h"
#include "Core/KLV/Keys.h"
#include "Core/Metadata/EntryView.h"
#include "Core/Metadata/StructuralMetadataKeys.h"

namespace Vantor {

namespace {

constexpr ReferenceKinds kStrong{false};
constexpr ReferenceKinds kStrongAndWeak{true};

std::vector<Types::UUID> targetsOf(const Element& property, ReferenceKinds kinds) {
  std::vector<Types::UUID> targets;
  property.appendTargets(kinds, targets);
  return targets;
}

/// Finds the sets that no other set owns.
class Owners {
 public:
  explicit Owners(const PartitionMetadata& partition) {
    std::vector<Types::UUID> owned;
    for (const MetadataSet* set : partition.sets()) {
      for (const Element* property : set->inDefinitionOrder()) property->appendTargets(kStrong, owned);
    }
    owned_.insert(owned.begin(), owned.end());
  }
  bool isOwner(const MetadataSet& set) const {
    return set.instanceUID() == nullptr || owned_.count(*set.instanceUID()) == 0;
  }

 private:
  std::unordered_set<Types::UUID> owned_;
};

void append(std::string& text, const uint8* octets, std::size_t size) {
  text.append(reinterpret_cast<const char*>(octets), size);
}

/// The key and the properties that do not depend on InstanceUIDs.
std::string keyAndValues(const MetadataSet& set, const PartitionDictionary& tags) {
  std::string text;
  append(text, set.key().normalised().rawBuffer(), KLV::Key::kSize);
  for (const Element* property : set.inDefinitionOrder()) {
    const auto* value = property->wireValue();
    if (set.isInstanceUID(*property) || value == nullptr || !targetsOf(*property, kStrongAndWeak).empty()) continue;
    text += propertyName(*property, tags) + '=' + std::to_string(value->encodedSize()) + ':';
    append(text, value->rawBuffer(), value->encodedSize());
  }
  return text;
}

/// An object directory changes with every edit of the sets that it lists.
struct DarkIdentity {
  explicit DarkIdentity(const EntryView& entry) : key(*entry.key) {
    if (!KLV::isOfObjectDirectory(key)) octets = entry.octets;
  }
  friend bool operator==(const DarkIdentity& left, const DarkIdentity& right) {
    return left.key == right.key && left.octets == right.octets;
  }

  KLV::Key key;
  std::string_view octets;
};

struct DarkIdentityHash {
  std::size_t operator()(const DarkIdentity& identity) const noexcept {
    return KLV::KeyHash()(identity.key) ^ std::hash<std::string_view>()(identity.octets);
  }
};

}  // namespace

SetPairing::Side::Side(const PartitionMetadata& partition)
    : partition(partition), partners(partition.entries().size(), kNone) {
  for (std::size_t i = 0; i < partners.size(); ++i) {
    if (const auto* set = EntryView(partition.entries()[i]).set) places.emplace(set, i);
  }
}

const MetadataSet* SetPairing::Side::find(const Types::UUID& instanceUID) const {
  const auto& sets = partition.findByInstanceUID(instanceUID);
  return sets.empty() ? nullptr : sets.front();
}

bool SetPairing::Side::isDark(const MetadataSet& set) const {
  return EntryView(partition.entries()[places.at(&set)]).isDark();
}

std::vector<const MetadataSet*> SetPairing::Side::freeSets() const {
  std::vector<const MetadataSet*> sets;
  partition.calculateSerializationOrder(sets, true, false);
  const auto isOther = [this](const MetadataSet* set) { return !isFree(*set) || isDark(*set); };
  sets.erase(std::remove_if(sets.begin(), sets.end(), isOther), sets.end());
  return sets;
}

SetPairing::SetPairing(const PartitionMetadata& left, const PartitionMetadata& right, Pairing pairing)
    : left_(left), right_(right) {
  if (pairing == Pairing::kByIdentifier) pairByIdentifier();
  pairFirstSets();
  follow(0, kStrong);
  follow(0, kStrongAndWeak);
  pairOwnersByValue();
  pairByKey();
  pairDark();
}

void SetPairing::pairByIdentifier() {
  for (const MetadataSet* set : left_.partition.sets()) {
    if (set->instanceUID() == nullptr) continue;
    const auto& lefts = left_.partition.findByInstanceUID(*set->instanceUID());
    const auto& rights = right_.partition.findByInstanceUID(*set->instanceUID());
    if (lefts.size() == 1 && rights.size() == 1) pair(*set, *rights.front());
  }
}

void SetPairing::pairFirstSets() {
  const auto& preface = Structural::StructuralMetadataKeys::preface();
  const bool hasPreface = !left_.partition.find(preface).empty() || !right_.partition.find(preface).empty();
  const auto& lefts = hasPreface ? left_.partition.find(preface) : left_.partition.sets();
  const auto& rights = hasPreface ? right_.partition.find(preface) : right_.partition.sets();
  if (!lefts.empty() && !rights.empty()) pair(*lefts.front(), *rights.front());
}

bool SetPairing::pair(const MetadataSet& left, const MetadataSet& right) {
  if (!left.key().matches(right.key()) || left_.isDark(left) != right_.isDark(right)) return false;
  if (!left_.isFree(left) || !right_.isFree(right)) return false;
  pairPlaces(left_.places.at(&left), right_.places.at(&right));
  setPairs_.emplace_back(&left, &right);
  return true;
}

void SetPairing::pairPlaces(std::size_t left, std::size_t right) {
  left_.partners[left] = right;
  right_.partners[right] = left;
}

void SetPairing::follow(std::size_t firstPair, ReferenceKinds kinds) {
  for (std::size_t i = firstPair; i < setPairs_.size(); ++i) followReferences(SetPair(setPairs_[i]), kinds);
}

void SetPairing::followReferences(const SetPair& sets, ReferenceKinds kinds) {
  const auto properties = pairProperties(*sets.first, left_.partition.partitionDictionary(), *sets.second,
                                         right_.partition.partitionDictionary());
  for (const auto& [left, right] : properties) {
    if (left == nullptr || right == nullptr) continue;
    const auto lefts = targetsOf(*left, kinds);
    const auto rights = targetsOf(*right, kinds);
    for (std::size_t i = 0; i < std::min(lefts.size(), rights.size()); ++i) {
      const auto* leftTarget = left_.find(lefts[i]);
      const auto* rightTarget = right_.find(rights[i]);
      if (leftTarget != nullptr && rightTarget != nullptr) pair(*leftTarget, *rightTarget);
    }
  }
}

void SetPairing::pairOwnersByValue() {
  const Owners leftOwners(left_.partition);
  const Owners rightOwners(right_.partition);
  FirstComeQueue<std::string, const MetadataSet*> waiting;
  for (const MetadataSet* set : right_.freeSets()) {
    if (rightOwners.isOwner(*set)) waiting.add(keyAndValues(*set, right_.partition.partitionDictionary()), set);
  }
  for (const MetadataSet* set : left_.freeSets()) {
    if (!leftOwners.isOwner(*set)) continue;
    pairWithFirst(*set, waiting, keyAndValues(*set, left_.partition.partitionDictionary()));
  }
}

void SetPairing::pairByKey() {
  FirstComeQueue<KLV::Key, const MetadataSet*, KLV::KeyHash> waiting;
  for (const MetadataSet* set : right_.freeSets()) waiting.add(set->key().normalised(), set);
  for (const MetadataSet* set : left_.freeSets()) pairWithFirst(*set, waiting, set->key().normalised());
}

template <class Waiting, class Kind>
void SetPairing::pairWithFirst(const MetadataSet& left, Waiting& waiting, const Kind& kind) {
  if (!left_.isFree(left)) return;  // paired already, with its owner
  const auto* found = waiting.take(kind, [this](const MetadataSet* set) { return right_.isFree(*set); });
  const std::size_t first = setPairs_.size();
  if (found == nullptr || !pair(left, **found)) return;
  follow(first, kStrong);
  follow(first, kStrongAndWeak);
}

void SetPairing::pairDark() {
  FirstComeQueue<DarkIdentity, std::size_t, DarkIdentityHash> waiting;
  const auto& rights = right_.partition.entries();
  for (std::size_t i = 0; i < rights.size(); ++i) {
    const EntryView entry(rights[i]);
    if (entry.isDark() && right_.partners[i] == kNone) waiting.add(DarkIdentity(entry), i);
  }
  const auto& lefts = left_.partition.entries();
  for (std::size_t i = 0; i < lefts.size(); ++i) {
    const EntryView entry(lefts[i]);
    if (!entry.isDark() || left_.partners[i] != kNone) continue;
    if (const auto* found = waiting.take(DarkIdentity(entry))) pairPlaces(i, *found);
  }
}

}  // namespace Vantor
