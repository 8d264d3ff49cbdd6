#include "Edit/ReferenceMerge.h"

#include <unordered_map>
#include <unordered_set>

namespace Vantor::Edit {

ReferenceTargets mergeReferences(const ReferenceTargets& all, const ReferenceTargets& shown,
                                 const ReferenceTargets& theirs) {
  const std::unordered_set<Types::UUID> there(theirs.begin(), theirs.end());
  ReferenceTargets merged;  // begins with the hidden references that no predecessor has
  std::unordered_map<Types::UUID, ReferenceTargets> behind;
  auto* place = &merged;
  std::size_t next = 0;
  for (const auto& target : all) {
    if (next == shown.size() || target != shown[next]) {
      place->push_back(target);
      continue;
    }
    ++next;
    if (there.count(target) != 0) place = &behind[target];
  }
  for (const auto& target : theirs) {
    merged.push_back(target);
    const auto hidden = behind.find(target);
    if (hidden == behind.end()) continue;
    merged.insert(merged.end(), hidden->second.begin(), hidden->second.end());
    behind.erase(hidden);  // of several references to one target, the first one has them
  }
  return merged;
}

}  // namespace Vantor::Edit
