#include "Edit/EditedSets.h"

#include <utility>

#include "Edit/Differences.h"

namespace Vantor::Edit {

std::vector<EditedSet> editedSets(const PartitionMetadata& before, PartitionMetadata& after) {
  std::vector<EditedSet> edited;
  for (MetadataSet* set : after.sets()) {
    const auto* instanceUID = set->definition() == nullptr ? nullptr : set->instanceUID();
    const auto* base = instanceUID == nullptr ? nullptr : findOnly(before, *instanceUID);
    if (base == nullptr || base->definition() != set->definition() || findOnly(after, *instanceUID) == nullptr)
      continue;
    auto properties =
        differingProperties(*base, before.partitionDictionary(), *set, std::as_const(after).partitionDictionary());
    if (!properties.empty()) edited.push_back({base, set, std::move(properties)});
  }
  return edited;
}

}  // namespace Vantor::Edit
