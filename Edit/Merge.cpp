#include "Edit/Merge.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "Core/Metadata/PartitionDictionary.h"
#include "Core/Platform/Raise.h"
#include "Edit/DarkMerge.h"
#include "Edit/PropertyMerge.h"

namespace Vantor::Edit {

namespace {

/// The edits of one set of ours.
struct SetEdit {
  std::vector<PropertyEdit> properties = {};
  const DarkParsedGroup* group = nullptr;  // of theirs, to replace one of ours
  std::optional<uint8> lengthOctets = {};
};

/// Plans all edits before it applies the first, so that nothing is changed when one of them fails.
class Merger {
 public:
  Merger(PartitionMetadata& ours, const PartitionMetadata& base, const Theirs& theirs, const Scope& scope)
      : ours_(ours),
        base_(base),
        theirs_(theirs),
        scope_(scope),
        properties_(ours, base, theirs, scope, report_),
        dark_(base, theirs) {}

  MergeReport run() {
    for (MetadataSet* set : ours_.sets()) planSet(*set);
    planNewSets();
    refuseLostTargets();
    reportUnnamed();
    apply();
    return std::move(report_);
  }

 private:
  void planSet(MetadataSet& set) {
    const auto* instanceUID = set.instanceUID();
    if (instanceUID == nullptr) return;  // see DarkMerge and reportUnnamed()
    const auto* base = findOnly(base_, *instanceUID);
    const auto* theirs = findOnly(theirs_.partition, *instanceUID);
    if (findOnly(ours_, *instanceUID) == nullptr || base == nullptr) return planOneOfSeveral(set);
    if (theirs != nullptr) return planSet(set, *base, *theirs);
    if (!scope_.shows(*base)) return;
    if (theirs_.mayRemove) {
      removed_.insert(&set);
    } else {
      report_.kept.push_back({set.fullName(), ""});
    }
  }

  void planSet(MetadataSet& set, const MetadataSet& base, const MetadataSet& theirs) {
    SetEdit edit;
    if (asGroup(&set) != nullptr || asGroup(&theirs) != nullptr) {
      if (!areSame(base, base_.partitionDictionary(), theirs, theirs_.partition.partitionDictionary())) {
        edit.group = asGroup(&theirs);
        if (edit.group == nullptr || asGroup(&set) == nullptr) return rejectKind(set, theirs);
      }
    } else if (set.definition() != theirs.definition()) {
      return rejectKind(set, theirs);
    } else {
      edit.properties = properties_.plan(base, theirs, set);
    }
    if (hasOtherLengthOctets(base, theirs)) edit.lengthOctets = theirs.berLength();
    const bool isEdited = edit.group != nullptr || edit.lengthOctets || !edit.properties.empty();
    if (isEdited) edits_.emplace(&set, std::move(edit));
  }

  void rejectKind(const MetadataSet& set, const MetadataSet& theirs) {
    report_.rejected.push_back({RejectedEdit::Reason::kOtherKind, set.fullName(), theirs.name()});
  }

  /// Sets that share an InstanceUID cannot be identified.
  void planOneOfSeveral(const MetadataSet& set) {
    const auto& ours = ours_.findByInstanceUID(*set.instanceUID());
    if (&set != ours.front() || !scope_.shows(set)) return;
    const auto& base = base_.findByInstanceUID(*set.instanceUID());
    const auto& theirs = theirs_.partition.findByInstanceUID(*set.instanceUID());
    if (theirs.empty() && !theirs_.mayRemove) return report_.kept.push_back({set.fullName(), ""});
    const auto isOfBase = [&](const MetadataSet* one) {
      return std::any_of(base.begin(), base.end(), [&](const MetadataSet* other) {
        return areSame(*other, base_.partitionDictionary(), *one, theirs_.partition.partitionDictionary(),
                       scope_.fidelity());
      });
    };
    // A document has one of them.
    if (!theirs.empty() && std::all_of(theirs.begin(), theirs.end(), isOfBase)) return;
    report_.rejected.push_back({RejectedEdit::Reason::kSharedInstanceUID, set.fullName()});
  }

  void planNewSets() {
    for (const MetadataSet* set : theirs_.partition.sets()) {
      const auto* instanceUID = set->instanceUID();
      const bool isNew = instanceUID != nullptr && ours_.findByInstanceUID(*instanceUID).empty() &&
                         base_.findByInstanceUID(*instanceUID).empty();
      if (isNew) added_.push_back(set);
    }
  }

  /// A set that theirs does not show may refer to one that theirs removes.
  void refuseLostTargets() const {
    if (removed_.empty()) return;
    std::unordered_map<Types::UUID, const MetadataSet*> removed;
    for (const MetadataSet* set : removed_) removed.emplace(*set->instanceUID(), set);
    for (const MetadataSet* set : ours_.sets()) {
      if (removed_.count(set) != 0) continue;
      std::vector<Types::UUID> targets;
      for (const Element* property : set->inDefinitionOrder()) property->appendTargets({true}, targets);
      const auto* theirs = set->instanceUID() == nullptr ? nullptr : findOnly(theirs_.partition, *set->instanceUID());
      for (const auto& target : targets) {
        const auto found = removed.find(target);
        if (found == removed.end() || (theirs != nullptr && !scope_.hides(target, true))) continue;
        Exceptions::raise<Exceptions::InvalidFormat>(
            "the document omits the {}, but the {} refers to it, which the document does not show",
            found->second->fullName(), set->fullName());
      }
    }
  }

  /// Sets without InstanceUID are identified by their content.
  void reportUnnamed() {
    std::map<std::string, int64> balance;
    std::map<std::string, std::string> names;
    const auto count = [&](const PartitionMetadata& partition, int64 by) {
      for (const MetadataSet* set : partition.sets()) {
        if (set->instanceUID() != nullptr || asGroup(set) != nullptr) continue;
        const auto content = contentOf(*set, partition.partitionDictionary());
        balance[content] += by;
        names[content] = set->name();
      }
    };
    count(base_, -1);
    count(theirs_.partition, 1);
    std::set<std::string> rejected;
    for (const auto& [content, difference] : balance) {
      if (difference != 0) rejected.insert(names.at(content));
    }
    for (const auto& name : rejected) report_.rejected.push_back({RejectedEdit::Reason::kNoInstanceUID, name});
  }

  void apply() {
    reserveTags();
    for (auto& [set, edit] : edits_) {
      if (edit.group == nullptr) properties_.apply(std::move(edit.properties), *set);
      if (edit.lengthOctets) set->setBerLength(*edit.lengthOctets);
    }
    const auto isOfGroup = [](const auto& edit) { return edit.second.group != nullptr; };
    if (!removed_.empty() || !dark_.isUnchanged() || std::any_of(edits_.begin(), edits_.end(), isOfGroup)) rebuild();
    for (const MetadataSet* set : added_) addSet(*set);
  }

  /// Properties get none of the local tags used in new or replaced dark groups.
  void reserveTags() {
    const auto reserve = [this](const DarkParsedGroup* group) {
      if (group == nullptr) return;
      reserveDarkTags(group->key(), group->value().data(), group->value().size(), ours_.partitionDictionary());
    };
    for (const MetadataSet* set : added_) reserve(asGroup(set));
    for (const auto& edit : edits_) reserve(edit.second.group);
  }

  /// Puts the KLVs of ours back in their order, without removed ones and with replacements.
  void rebuild() {
    for (auto& entry : ours_.releaseEntries()) {
      if (auto* dark = std::get_if<auto_ptr<DarkMetadataSet>>(&entry)) {
        dark_.merge((*dark)->key(), (*dark)->berLength(), (*dark)->value().bytes(), ours_, report_);
        continue;
      }
      auto set = std::move(std::get<auto_ptr<MetadataSet>>(entry));
      const auto* group = asGroup(set.get());
      const auto edit = edits_.find(set.get());
      if (removed_.count(set.get()) != 0) continue;
      if (edit != edits_.end() && edit->second.group != nullptr) {
        addGroup(*edit->second.group, edit->second.lengthOctets.value_or(set->berLength()));
      } else if (group != nullptr && group->instanceUID() == nullptr) {
        dark_.merge(group->key(), group->berLength(), group->value(), ours_, report_);
      } else {
        ours_.addMetadataSet(std::move(set));
      }
    }
    dark_.addNew(ours_);
  }

  void addGroup(const DarkParsedGroup& group, uint8 lengthOctets) {
    ours_.addKLV(group.key(), lengthOctets, group.value().data(), group.value().size(), 0);
  }

  void addSet(const MetadataSet& set) {
    if (const auto* group = asGroup(&set)) return addGroup(*group, group->berLength());
    auto& added = *ours_.createMetadataSet(set.key());
    added.setBerLength(set.berLength());
    properties_.copyAll(set, added);
  }

  PartitionMetadata& ours_;
  const PartitionMetadata& base_;
  const Theirs& theirs_;
  const Scope& scope_;
  MergeReport report_;
  PropertyMerge properties_;
  DarkMerge dark_;
  std::unordered_map<MetadataSet*, SetEdit> edits_;
  std::unordered_set<const MetadataSet*> removed_;
  std::vector<const MetadataSet*> added_;
};

}  // namespace

MergeReport merge(PartitionMetadata& ours, const PartitionMetadata& base, const Theirs& theirs, const Scope& scope) {
  return Merger(ours, base, theirs, scope).run();
}

}  // namespace Vantor::Edit
