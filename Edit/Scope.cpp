#include "Edit/Scope.h"

#include "Core/KLV/Keys.h"
#include "Core/Platform/Raise.h"

namespace Vantor::Edit {

namespace {

/// The set that a reference leads to; the first one of several.
const MetadataSet* targetOf(const Types::UUID& instanceUID, const PartitionMetadata& partition) {
  const auto& found = partition.findByInstanceUID(instanceUID);
  return found.empty() ? nullptr : found.front();
}

std::unordered_set<Types::UUID> strongTargetsOf(const MetadataSet& set) {
  std::vector<Types::UUID> targets;
  for (const Element* property : set.inDefinitionOrder()) property->appendTargets({false}, targets);
  return {targets.begin(), targets.end()};
}

const MetadataSet& startOf(const PartitionMetadata& base, const DocumentForm& form) {
  const auto* start = form.start ? targetOf(*form.start, base) : base.preface();
  if (start != nullptr) return *start;
  if (!form.start) Exceptions::raise<Exceptions::InvalidFormat>("the file has no Preface");
  Exceptions::raise<Exceptions::InvalidFormat>("the document starts from a set that the file does not have: {}",
                                               form.start->dottedText());
}

}  // namespace

Scope::Scope(const PartitionMetadata& base) : base_(base) {}

Scope::Scope(const PartitionMetadata& base, const PartitionMetadata& theirs, const DocumentForm& form)
    : base_(base),
      isWhole_(!form.start && !form.isStructuralOnly),
      hidesOthers_(form.isStructuralOnly && form.isNested),
      skipsOthers_(form.isStructuralOnly),
      isNested_(form.isNested),
      theirs_(form.isAssumed && form.isNested ? &theirs : nullptr) {
  const auto& start = startOf(base, form);
  if (isWhole_) return;
  show(start);
  std::vector<const MetadataSet*> order;
  const uint32 floating = base.calculateSerializationOrder(order, true, false);
  for (std::size_t i = order.size() - floating; i < order.size(); ++i) show(*order[i]);
}

void Scope::show(const MetadataSet& start) {
  std::vector<const MetadataSet*> waiting = {&start};
  std::vector<Types::UUID> targets;
  while (!waiting.empty()) {
    const MetadataSet& set = *waiting.back();
    waiting.pop_back();
    if (!shown_.insert(&set).second) continue;
    targets.clear();
    // Beside the set that refers to it, a dark group is written whatever the reference and the choice of sets.
    for (const Element* property : set.inDefinitionOrder()) property->appendTargets({!isNested_}, targets);
    const auto strong = strongTargetsOf(set);
    for (const auto& instanceUID : targets) {
      const auto* target = targetOf(instanceUID, base_);
      if (target == nullptr) continue;
      const bool isFollowed =
          strong.count(instanceUID) != 0 && !(skipsOthers_ && !KLV::isStructuralMetadataSet(target->key()));
      if (isFollowed || (!isNested_ && target->definition() == nullptr)) waiting.push_back(target);
    }
  }
}

bool Scope::hides(const Types::UUID& instanceUID, bool isStrong) const {
  if (!hidesOthers_ && theirs_ == nullptr) return false;
  const auto* target = targetOf(instanceUID, base_);
  if (target == nullptr) return false;
  if (hidesOthers_ && !KLV::isStructuralMetadataSet(target->key())) return true;
  if (theirs_ == nullptr) return false;
  return target->definition() == nullptr || (isStrong && !theirs_->findByInstanceUID(instanceUID).empty());
}

}  // namespace Vantor::Edit
