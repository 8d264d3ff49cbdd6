#include "Look/SetList.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Core/Metadata/ReferenceTargets.h"
#include "Core/Metadata/SetDetails.h"
#include "Core/Platform/HexDigits.h"
#include "Terminal/WrappedRows.h"

namespace Vantor::Tool {

namespace {

constexpr std::size_t kFewestOfAnIdentifier = 8;
constexpr std::string_view kDataDefinition = "ComponentDataDefinition";

/// Whether sets of a kind only define what others mean, as the hundreds in a MetaDictionary do.
bool isDefinition(const MetaMetadata::MetaMetadataSet* kind) {
  while (kind != nullptr && kind->symbol() != "MetaDefinition") kind = kind->parent();
  return kind != nullptr;
}

std::size_t commonDigits(const std::string& a, const std::string& b) {
  return static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
}

/// The shortest beginnings of InstanceUIDs that choose one set each; InstanceUIDs that sets share are whole.
std::unordered_map<const MetadataSet*, std::string> beginningsOf(const PartitionMetadata& metadata) {
  std::vector<std::pair<std::string, const MetadataSet*>> digits;
  for (const MetadataSet* set : metadata.sets()) {
    const auto* uid = set->instanceUID();
    if (uid != nullptr) digits.emplace_back(Platform::hexText<std::string>(uid->rawBuffer(), Types::UUID::kSize), set);
  }
  std::sort(digits.begin(), digits.end());
  std::unordered_map<const MetadataSet*, std::string> beginnings;
  for (std::size_t i = 0; i < digits.size(); ++i) {
    std::size_t same = i == 0 ? 0 : commonDigits(digits[i].first, digits[i - 1].first);
    if (i + 1 < digits.size()) same = std::max(same, commonDigits(digits[i].first, digits[i + 1].first));
    beginnings[digits[i].second] = digits[i].first.substr(0, std::max(same + 1, kFewestOfAnIdentifier));
  }
  return beginnings;
}

class SetList {
 public:
  SetList(const PartitionMetadata& metadata, const SetListOptions& options)
      : metadata_(metadata), options_(options), beginnings_(beginningsOf(metadata)), owners_(metadata) {
    for (const MetadataSet* set : metadata.sets()) {
      if (set->definition() != nullptr) kinds_[set->definition()->symbol()].push_back(set);
    }
    for (const auto& [name, sets] : kinds_) {
      for (std::size_t i = 0; i < sets.size(); ++i) choices_[sets[i]] = choiceOf(*sets[i], i + 1, sets.size());
    }
  }

  std::string text() const {
    WrappedRows rows;
    for (const auto& [name, sets] : kinds_) {
      if (!options_.listsDefinitions && sets.size() > 1 && isDefinition(sets.front()->definition())) {
        rows.add(name + "[...]", {std::to_string(sets.size()) + " sets, listed by --all-sets"});
        continue;
      }
      for (const auto* set : sets) rows.add(choices_.at(set), detailsIn(*set, set == sets.front()));
    }
    return rows.text(options_.width);
  }

 private:
  /// An abstract kind stands for all that inherit from it, so that its own sets have no numbers.
  static std::string choiceOf(const MetadataSet& set, std::size_t number, std::size_t count) {
    if (!set.definition()->isConcrete() && set.instanceUID() != nullptr) return set.instanceUID()->dottedText();
    return count == 1 ? set.name() : set.name() + "[" + std::to_string(number) + "]";
  }

  std::vector<std::string> detailsIn(const MetadataSet& set, bool isFirst) const {
    std::vector<std::string> details;
    const auto names = MetaMetadata::namesOf(*set.definition());
    if (isFirst && names.size() > set.name().size()) details.push_back(names.substr(set.name().size() + 1));
    for (auto& detail : detailsOf(set)) details.push_back(std::move(detail));
    if (const auto* segment = segmentOf(set)) details.push_back(shortText(*segment, kDataDefinition));
    const auto place = placeOf(set);
    if (!place.empty()) details.push_back(place);
    const auto beginning = beginnings_.find(&set);
    if (beginning != beginnings_.end()) details.push_back(beginning->second);
    return details;
  }

  /// "in Sequence[1] of MaterialPackage"; nothing for what belongs to Preface or ContentStorage, of which there is one.
  std::string placeOf(const MetadataSet& set) const {
    const auto* owner = owners_.ownerOf(set);
    if (owner == nullptr || owner->name() == "Preface" || owner->name() == "ContentStorage") return "";
    const auto* package = owners_.packageOf(set);
    const bool isDirect = package == nullptr || package == owner;
    return "in " + nameOf(*owner) + (isDirect ? "" : " of " + nameOf(*package));
  }

  std::string nameOf(const MetadataSet& set) const {
    const auto choice = choices_.find(&set);
    return choice == choices_.end() ? set.name() : choice->second;
  }

  /// What a track has on it: its kind is that of the track.
  const MetadataSet* segmentOf(const MetadataSet& set) const {
    if (set.find("TrackSegment") == nullptr) return nullptr;
    for (const MetadataSet* target : targetsOf(set, metadata_, ReferenceKinds{})) {
      if (!shortText(*target, kDataDefinition).empty()) return target;
    }
    return nullptr;
  }

  const PartitionMetadata& metadata_;
  const SetListOptions& options_;
  std::unordered_map<const MetadataSet*, std::string> beginnings_;
  std::map<std::string, std::vector<const MetadataSet*>> kinds_;
  std::unordered_map<const MetadataSet*, std::string> choices_;
  SetOwners owners_;
};

}  // namespace

std::string listOfSets(const PartitionMetadata& metadata, const SetListOptions& options) {
  return SetList(metadata, options).text();
}

}  // namespace Vantor::Tool
