#include "Edit/Consequences.h"

#include <map>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/SetValues.h"
#include "Core/Types/Array.h"
#include "Core/Types/Batch.h"
#include "Core/Types/UInt32.h"
#include "Core/Types/UMID32.h"
#include "Edit/DescriptiveSchemes.h"
#include "Edit/Differences.h"
#include "Edit/EditedSets.h"

namespace Vantor::Edit {

namespace {

using Types::UInt32;
using Types::UMID32;

/// Numbers of tracks, with the property of the same set that names their package; without one, it is the package that
/// the set belongs to (ST 377-1; the last ones are of ST 380 and RDD 48).
struct TrackReference {
  const char* property;
  const char* package;
};
constexpr TrackReference kTrackReferences[] = {{"SourceTrackID", "SourcePackageID"},
                                               {"MonoSourceTrackIDs", "SourcePackageID"},
                                               {"DynamicSourceTrackIDs", "DynamicSourcePackageID"},
                                               {"DescribedTrackIDs", nullptr},
                                               {"DescriptiveClipDescribedTrackIDs", nullptr},
                                               {"LinkedTrackID", nullptr},
                                               {"ShotTrackIDs", nullptr},
                                               {"AS_07_DateTimeEssenceTrackID", nullptr}};

/// Whether the value, or the items of it, are of a type.
template <class Value>
bool holds(const Element& element) {
  const auto& definition = *element.metaAttribute().metaElement();
  const auto* collection = MetaMetadata::asCollection(definition);
  return (collection == nullptr ? definition.dataType() : collection->dataSubType()) == Value::kIdentifier;
}

/// The value, or collection of values, with others in their places; null where nothing is replaced.
/// @param replace  gives the other value, or none.
template <class Value, class Replace>
auto_ptr<Types::SimpleDataType> replaced(const Types::SimpleDataType& value, const Replace& replace) {
  if (value.identifier() == Value::kIdentifier) {
    const auto other = replace(static_cast<const Value&>(value));
    return other ? std::make_unique<Value>(*other) : nullptr;
  }
  const auto& items = static_cast<const Types::Collection&>(value);
  auto copy = value.clone();
  auto& others = static_cast<Types::Collection&>(*copy);
  while (others.size() != 0) others.removeAt(others.size() - 1);
  bool isReplaced = false;
  for (uint32 i = 0; i < items.size(); ++i) {
    const auto other = replace(static_cast<const Value&>(items.at(i)));
    isReplaced = isReplaced || other.has_value();
    others.append(other ? std::make_unique<Value>(*other) : items.at(i).clone());
  }
  return isReplaced ? std::move(copy) : nullptr;
}

/// The packages of one state, by PackageID, and what belongs to them.
class Packages {
 public:
  explicit Packages(const PartitionMetadata& metadata) : metadata_(metadata) {
    for (const MetadataSet* set : metadata.sets()) {
      const auto* id = valueOf<UMID32>(*set, "PackageID");
      if (id == nullptr) continue;
      const auto [place, isNew] = byID_.emplace(*id, set);
      if (!isNew) place->second = nullptr;  // ambiguous
      own(*set);
    }
  }

  const MetadataSet* find(const UMID32& id) const {
    const auto found = byID_.find(id);
    return found == byID_.end() ? nullptr : found->second;
  }
  const MetadataSet* ownerOf(const MetadataSet& set) const {
    const auto found = owners_.find(&set);
    return found == owners_.end() ? nullptr : found->second;
  }

 private:
  /// Follows the strong references from a package.
  void own(const MetadataSet& package) {
    std::vector<const MetadataSet*> waiting = {&package};
    while (!waiting.empty()) {
      const auto* set = waiting.back();
      waiting.pop_back();
      if (!owners_.emplace(set, &package).second) continue;
      std::vector<Types::UUID> targets;
      for (const Element& property : *set) property.appendTargets({}, targets);
      for (const auto& target : targets) {
        if (const auto* found = findOnly(metadata_, target)) waiting.push_back(found);
      }
    }
  }

  const PartitionMetadata& metadata_;
  std::unordered_map<UMID32, const MetadataSet*> byID_;
  std::unordered_map<const MetadataSet*, const MetadataSet*> owners_;
};

/// Changes the references that the edit left alone to what it has renamed.
class Follower {
 public:
  Follower(const PartitionMetadata& before, PartitionMetadata& after)
      : before_(before), after_(after), packages_(before) {}

  std::vector<MergePlace> run() {
    findRenamed();
    if (renamedPackages_.empty() && renumberedTracks_.empty()) return {};
    for (MetadataSet* set : after_.sets()) follow(*set);
    return std::move(places_);
  }

 private:
  using Tracks = std::map<uint32, std::optional<uint32>>;  // by their old numbers; none for one of several

  void findRenamed() {
    for (const auto& edited : editedSets(before_, after_)) {
      const auto *oldID = valueOf<UMID32>(*edited.before, "PackageID"),
                 *newID = valueOf<UMID32>(*edited.after, "PackageID");
      const bool isRenamed = oldID != nullptr && newID != nullptr && *oldID != *newID && *oldID != UMID32();
      if (isRenamed && packages_.find(*oldID) != nullptr) renamedPackages_.emplace(*oldID, *newID);
      const auto *oldNumber = valueOf<UInt32>(*edited.before, "TrackID"),
                 *newNumber = valueOf<UInt32>(*edited.after, "TrackID");
      const auto* package = packages_.ownerOf(*edited.before);
      if (package == nullptr || oldNumber == nullptr || newNumber == nullptr ||
          oldNumber->value() == newNumber->value())
        continue;
      renumberedTracks_[package].emplace(oldNumber->value(), newNumber->value());
    }
    for (auto& [package, tracks] : renumberedTracks_) dropShared(*package, tracks);
  }

  /// Numbers that several tracks of the package had mean none of them.
  void dropShared(const MetadataSet& package, Tracks& tracks) {
    std::vector<Types::UUID> targets;
    if (const auto* element = package.find("PackageTracks")) element->appendTargets({}, targets);
    std::map<uint32, int> counts;
    for (const auto& target : targets) {
      const auto* track = findOnly(before_, target);
      const auto* number = track == nullptr ? nullptr : valueOf<UInt32>(*track, "TrackID");
      if (number != nullptr && ++counts[number->value()] > 1) tracks[number->value()].reset();
    }
  }

  void follow(MetadataSet& set) {
    const auto* instanceUID = set.definition() == nullptr ? nullptr : set.instanceUID();
    const auto* before = instanceUID == nullptr ? nullptr : findOnly(before_, *instanceUID);
    if (before == nullptr || before->definition() != set.definition()) return;
    if (!renumberedTracks_.empty()) followTracks(*before, set);
    if (!renamedPackages_.empty()) followPackages(*before, set);
  }

  void followTracks(const MetadataSet& before, MetadataSet& set) {
    for (const auto& reference : kTrackReferences) {
      const auto* element = set.find(reference.property);
      if (element == nullptr || !holds<UInt32>(*element) || !isUnedited(before, set, reference.property)) continue;
      if (reference.package != nullptr && !isUnedited(before, set, reference.package)) continue;
      const auto* package = packageOf(before, reference.package);
      const auto tracks = renumberedTracks_.find(package);
      if (tracks == renumberedTracks_.end()) continue;
      change<UInt32>(set, *element, [&](const UInt32& number) -> std::optional<uint32> {
        const auto track = tracks->second.find(number.value());
        return track == tracks->second.end() ? std::nullopt : track->second;
      });
    }
  }

  /// The package whose tracks a set of the state before means.
  const MetadataSet* packageOf(const MetadataSet& set, const char* property) const {
    const auto* id = property == nullptr ? nullptr : valueOf<UMID32>(set, property);
    return id == nullptr ? packages_.ownerOf(set) : packages_.find(*id);
  }

  void followPackages(const MetadataSet& before, MetadataSet& set) {
    for (const Element& element : std::as_const(set)) {
      const auto& symbol = element.metaAttribute().metaElement()->symbol();
      if (symbol == "PackageID" || !holds<UMID32>(element) || !isUnedited(before, set, symbol)) continue;
      change<UMID32>(set, element, [this](const UMID32& id) -> std::optional<UMID32> {
        const auto renamed = renamedPackages_.find(id);
        return renamed == renamedPackages_.end() ? std::nullopt : std::optional(renamed->second);
      });
    }
  }

  static bool isUnedited(const MetadataSet& before, const MetadataSet& after, std::string_view property) {
    const auto present = [&](const MetadataSet& set) {
      const auto* element = set.find(property);
      return element != nullptr && element->isPresent() ? element : nullptr;
    };
    return areSame(present(before), present(after));
  }

  template <class Value, class Replace>
  void change(MetadataSet& set, const Element& element, const Replace& replace) {
    const auto* value = element.wireValue();
    const auto other = value == nullptr ? nullptr : replaced<Value>(*value, replace);
    if (other == nullptr) return;
    const auto& symbol = element.metaAttribute().metaElement()->symbol();
    set.set(symbol, *other);
    places_.push_back({set.fullName(), symbol});
  }

  const PartitionMetadata& before_;
  PartitionMetadata& after_;
  Packages packages_;
  std::unordered_map<UMID32, UMID32> renamedPackages_;
  std::unordered_map<const MetadataSet*, Tracks> renumberedTracks_;  // by packages of the state before
  std::vector<MergePlace> places_;
};

}  // namespace

std::vector<MergePlace> completeEdit(const PartitionMetadata& before, PartitionMetadata& after) {
  auto places = Follower(before, after).run();
  if (auto schemes = followFrameworks(before, after)) places.push_back(std::move(*schemes));
  return places;
}

}  // namespace Vantor::Edit
