#include "Core/Metadata/ReferenceTargets.h"

#include <unordered_set>

#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor {

std::vector<MetadataSet*> targetsOf(const MetadataSet& set, const PartitionMetadata& partition, ReferenceKinds kinds) {
  std::vector<Types::UUID> targetUIDs;
  for (const Element* element : set.inDefinitionOrder()) element->appendTargets(kinds, targetUIDs);
  std::vector<MetadataSet*> targets;
  for (const auto& uid : targetUIDs) {
    const auto& found = partition.findByInstanceUID(uid);
    if (!found.empty()) targets.push_back(found.front());
  }
  return targets;
}

std::vector<MetadataSet*> reachedFrom(const std::vector<MetadataSet*>& sets, const PartitionMetadata& partition) {
  std::vector<MetadataSet*> reached;
  std::unordered_set<const MetadataSet*> seen;
  const auto follow = [&](const MetadataSet& set) {
    for (MetadataSet* target : targetsOf(set, partition, ReferenceKinds{})) {
      if (seen.insert(target).second) reached.push_back(target);
    }
  };
  for (const MetadataSet* set : sets) follow(*set);
  for (std::size_t i = 0; i < reached.size(); ++i) follow(*reached[i]);
  return reached;
}

}  // namespace Vantor
