#include <algorithm>
#include <unordered_set>

#include "Core/KLV/Keys.h"
#include "Core/KLV/LocalSet.h"
#include "Core/Metadata/EntryView.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Types/UUID.h"
#include "Edit/Rules/Model.h"
#include "Edit/Rules/Rule.h"

/// Rules about references between sets.
namespace Vantor::Edit {

namespace {

using Types::UUID;
using Sets = PartitionMetadata::Sets;

/// Calls `visit(set, element, identifier)` for every reference.
template <class Visit>
void forEachReference(const Model& model, ReferenceKinds kinds, Visit&& visit) {
  std::vector<UUID> identifiers;
  for (const auto* set : model.sets()) {
    for (const auto* element : set->inDefinitionOrder()) {
      identifiers.clear();
      element->appendTargets(kinds, identifiers);
      for (const auto& identifier : identifiers) visit(*set, *element, identifier);
    }
  }
}

bool isWeak(const Element& element) {
  const auto* definition = definitionOf(element);
  if (definition == nullptr) return false;
  const auto* collection = MetaMetadata::asCollection(*definition);
  return (collection == nullptr ? definition->dataType() : collection->dataSubType()) ==
         Types::Identifiers::kWeakReference;
}

void checkDangling(const Model& model, Report& report) {
  forEachReference(model, {false}, [&](const MetadataSet& set, const Element& element, const UUID& identifier) {
    if (!model.metadata().findByInstanceUID(identifier).empty()) return;
    report.add(set, symbolOf(element), {identifier.dottedText()});
  });
}

/// The root of an object directory, a dark set, has the InstanceUIDs of two sets under tags that no primer explains
/// (Core/MXF/ObjectDirectory.h).
template <class Visit>
void forEachRootItem(const EntryView& root, Visit&& visit) {
  constexpr uint16 kLastSetTag = 2;  // 1 is of the MetaDictionary, 2 of the Preface
  const auto* octets = reinterpret_cast<const uint8*>(root.octets.data());
  for (const auto& item : KLV::readLocalSet(KLV::LocalSetCoding::kTwoByteLengths, octets, root.octets.size())) {
    if (item.tag <= kLastSetTag && item.size == UUID::kSize) visit(UUID(item.value));
  }
}

void checkDanglingRoot(const Model& model, const EntryView& root, Report& report) {
  try {
    forEachRootItem(root, [&](const UUID& identifier) {
      if (!model.metadata().findByInstanceUID(identifier).empty()) return;
      root.set == nullptr ? report.add({identifier.dottedText()}) : report.add(*root.set, {identifier.dottedText()});
    });
  } catch (const Exceptions::ParseError&) {
    // There is a rule about damaged directories.
  }
}

/// All zeros stand for no set.
void checkDanglingWeak(const Model& model, Report& report) {
  forEachReference(model, {true}, [&](const MetadataSet& set, const Element& element, const UUID& identifier) {
    if (!isWeak(element) || identifier == UUID()) return;
    if (!model.metadata().findByInstanceUID(identifier).empty()) return;
    report.add(set, symbolOf(element), {identifier.dottedText()});
  });
}

bool isOfKind(const MetadataSet& set, const MetaMetadata::MetaMetadataSet& kind) {
  return set.definition() == nullptr || set.definition()->isOrInherits(kind);
}

void checkAllDangling(const Model& model, Report& report) {
  checkDangling(model, report);
  for (const auto& entry : model.metadata().entries()) {
    const EntryView view(entry);
    if (view.isDark() && KLV::isObjectDirectoryRoot(*view.key)) checkDanglingRoot(model, view, report);
  }
}

void checkKinds(const Model& model, Report& report) {
  forEachReference(model, {true}, [&](const MetadataSet& set, const Element& element, const UUID& identifier) {
    const auto* kind = definitionOf(element) == nullptr ? nullptr : definitionOf(element)->target();
    const auto& targets = model.metadata().findByInstanceUID(identifier);
    if (kind == nullptr || targets.empty() || isOfKind(*targets.front(), *kind)) return;
    report.add(set, symbolOf(element), {targets.front()->fullName(), kind->symbol()});
  });
}

void checkDoubledSets(const Model& model, Report& report) {
  for (const auto* set : model.metadata().sets()) {
    if (set->instanceUID() == nullptr) continue;
    const auto& same = model.metadata().findByInstanceUID(*set->instanceUID());
    if (same.size() > 1 && same.front() != set) report.add(*set, "InstanceID", {same.front()->name()});
  }
}

/// The sets that references and dark octets lead to.
class Reach {
 public:
  explicit Reach(const Model& model) : model_(model) {
    for (const auto* set : model.metadata().sets()) {
      if (set->definition() == nullptr || model.is(*set, "Preface") || model.is(*set, "Root")) enter(*set);
    }
    followAll();
    if (hasUnreached()) addDark();  // which takes long where there are many dark octets
    followAll();
  }

  bool has(const MetadataSet& set) const { return reached_.count(&set) != 0; }

 private:
  void enter(const MetadataSet& set) {
    if (reached_.insert(&set).second) waiting_.push_back(&set);
  }

  bool hasUnreached() const {
    const auto& sets = model_.sets();
    return std::any_of(sets.begin(), sets.end(), [this](const MetadataSet* set) { return !has(*set); });
  }

  void followAll() {
    while (!waiting_.empty()) follow();
  }

  void follow() {
    const auto& set = *waiting_.back();
    waiting_.pop_back();
    std::vector<UUID> identifiers;
    for (const auto* element : set.inDefinitionOrder()) {
      element->appendTargets({true}, identifiers);
      if (definitionOf(*element) == nullptr && element->wireValue() != nullptr) addUnknown(*element->wireValue());
    }
    for (const auto& identifier : identifiers) enterAll(model_.metadata().findByInstanceUID(identifier));
  }

  /// Sets of one InstanceUID, all at the first reference to it.
  void enterAll(const Sets& sets) {
    if (sets.empty() || !followed_.insert(sets.front()).second) return;
    for (const auto* set : sets) enter(*set);
  }

  /// Unknown octets may hold references, at any place.
  void addOctets(const uint8* octets, std::size_t size) {
    for (std::size_t at = 0; at + UUID::kSize <= size; ++at) {
      enterAll(model_.metadata().findByInstanceUID(UUID(octets + at)));
    }
  }
  void addUnknown(const Types::SimpleDataType& value) { addOctets(value.rawBuffer(), value.encodedSize()); }

  void addDark() {
    for (const auto& entry : model_.metadata().entries()) {
      const EntryView view(entry);
      if (view.isDark()) addOctets(reinterpret_cast<const uint8*>(view.octets.data()), view.octets.size());
    }
  }

  const Model& model_;
  std::unordered_set<const MetadataSet*> reached_;
  std::unordered_set<const MetadataSet*> followed_;  // the first ones of the InstanceUIDs that references have
  std::vector<const MetadataSet*> waiting_;
};

/// Finds the sets from which references lead to all unreached ones: those that no other unreached set refers to, and
/// one set of each cycle that is on its own.
///
/// The last set that a depth-first search leaves is such a set; without all that it leads to, so is the last one of the
/// rest.
class LostTrees {
 public:
  LostTrees(const Model& model, const Reach& reach) : model_(model), reach_(reach) {
    for (const auto* set : model.sets()) search(set, &left_);
    seen_.clear();
  }

  template <class Visit>
  void forEachRoot(Visit&& visit) {
    for (auto set = left_.rbegin(); set != left_.rend(); ++set) {
      if (seen_.count(*set) == 0) visit(**set);
      search(*set, nullptr);
    }
  }

 private:
  struct Step {
    const MetadataSet* set;
    bool isLeft;
  };

  /// @param left  takes the sets in the order in which they are left; may be null.
  void search(const MetadataSet* start, std::vector<const MetadataSet*>* left) {
    std::vector<Step> steps = {{start, false}};
    while (!steps.empty()) {
      const auto [set, isLeft] = steps.back();
      steps.pop_back();
      if (isLeft) {
        if (left != nullptr) left->push_back(set);
      } else if (!reach_.has(*set) && seen_.insert(set).second) {
        steps.push_back({set, true});
        addTargets(*set, steps);
      }
    }
  }

  void addTargets(const MetadataSet& set, std::vector<Step>& steps) const {
    std::vector<UUID> identifiers;
    for (const auto& element : set) element.appendTargets({true}, identifiers);
    for (const auto& identifier : identifiers) {
      const auto& targets = model_.metadata().findByInstanceUID(identifier);
      if (!targets.empty() && targets.front()->definition() != nullptr) steps.push_back({targets.front(), false});
    }
  }

  const Model& model_;
  const Reach& reach_;
  std::unordered_set<const MetadataSet*> seen_;
  std::vector<const MetadataSet*> left_;
};

void checkUnreached(const Model& model, Report& report) {
  const Reach reach(model);
  LostTrees(model, reach).forEachRoot([&](const MetadataSet& set) { report.add(set); });
}

void checkShared(const Model& model, Report& report) {
  std::unordered_map<UUID, const MetadataSet*> owners;
  forEachReference(model, {false}, [&](const MetadataSet& set, const Element& element, const UUID& identifier) {
    const auto [owner, isFirst] = owners.emplace(identifier, &set);
    if (isFirst || model.metadata().findByInstanceUID(identifier).empty()) return;
    report.add(set, symbolOf(element), {identifier.dottedText(), owner->second->name()});
  });
}

void checkPreface(const Model& model, Report& report) {
  const auto prefaces = model.all("Preface");
  if (prefaces.empty()) report.add({"0"});
  if (prefaces.size() > 1) report.add(*prefaces[1], {std::to_string(prefaces.size())});
}

}  // namespace

const RuleTable& referenceRules() {
  static const RuleTable table = {
      {{"dangling-reference", Severity::kError, "no set has the InstanceUID {identifier}",
        "ST 377-1, Strong Reference"},
       checkAllDangling},
      {{"dangling-weak-reference", Severity::kWarning, "no set has the InstanceUID {identifier}",
        "ST 377-1, Weak Reference"},
       checkDanglingWeak},
      {{"reference-kind", Severity::kError, "{set} is no {kind}", "ST 395, ST 2003"}, checkKinds},
      {{"doubled-instance-uid", Severity::kError, "the {set} before it has the same InstanceUID",
        "ST 377-1, InterchangeObject"},
       checkDoubledSets},
      {{"unreached-set", Severity::kWarning, "no reference leads to the set", "ST 377-1"}, checkUnreached},
      {{"shared-set", Severity::kWarning, "the set {identifier} belongs to a {owner} already",
        "ST 377-1, Strong Reference"},
       checkShared},
      {{"preface-count", Severity::kError, "the metadata have {number} Prefaces instead of one", "ST 377-1, Preface"},
       checkPreface}};
  return table;
}

}  // namespace Vantor::Edit
