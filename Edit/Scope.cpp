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
    for (const Element* property : set.inDefinitionOrder()) property->appendTargets({false}, targets);
    for (const auto& instanceUID : targets) {
      const auto* target = targetOf(instanceUID, base_);
      if (target == nullptr || (skipsOthers_ && !KLV::isStructuralMetadataSet(target->key()))) continue;
      waiting.push_back(target);
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
