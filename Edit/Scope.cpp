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

Scope::Scope(const PartitionMetadata& base, const PartitionMetadata& theirs, const DocumentForm& form)
    : base_(base), form_(form), theirs_(form.isAssumed && form.isNested ? &theirs : nullptr) {
  const auto& start = startOf(base, form);
  if (isWhole()) return;
  show(start);
  std::vector<const MetadataSet*> order;
  const uint32 floating = base.calculateSerializationOrder(order, true, false);
  for (std::size_t i = order.size() - floating; i < order.size(); ++i) show(*order[i]);
}

void Scope::show(const MetadataSet& start) {
  std::vector<const MetadataSet*> waiting = {&start};
  while (!waiting.empty()) {
    const MetadataSet& set = *waiting.back();
    waiting.pop_back();
    if (!shown_.insert(&set).second) continue;
    const auto follow = [&](ReferenceKinds kinds, const auto& isWritten) {
      std::vector<Types::UUID> targets;
      for (const Element* property : set.inDefinitionOrder()) property->appendTargets(kinds, targets);
      for (const auto& instanceUID : targets) {
        const auto* target = targetOf(instanceUID, base_);
        if (target != nullptr && isWritten(*target)) waiting.push_back(target);
      }
    };
    follow({false}, [this](const MetadataSet& target) {
      return !form_.isStructuralOnly || KLV::isStructuralMetadataSet(target.key());
    });
    // Beside the set that refers to it, a dark group is written whatever the reference and the choice of sets.
    if (!form_.isNested) follow({true}, [](const MetadataSet& target) { return target.definition() == nullptr; });
  }
}

bool Scope::hides(const Types::UUID& instanceUID, bool isStrong) const {
  const bool hidesOthers = form_.isStructuralOnly && form_.isNested;
  if (!hidesOthers && theirs_ == nullptr) return false;
  const auto* target = targetOf(instanceUID, base_);
  if (target == nullptr) return false;
  if (hidesOthers && !KLV::isStructuralMetadataSet(target->key())) return true;
  if (theirs_ == nullptr) return false;
  return target->definition() == nullptr || (isStrong && !theirs_->findByInstanceUID(instanceUID).empty());
}

}  // namespace Vantor::Edit
