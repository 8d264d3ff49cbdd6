#include "Core/Comparison/PropertyPairing.h"

#include "Core/Comparison/FirstComeQueue.h"
#include "Core/Comparison/PropertyIdentity.h"

namespace Vantor {

std::vector<PropertyPair> pairProperties(const MetadataSet& left, const PartitionDictionary& leftTags,
                                         const MetadataSet& right, const PartitionDictionary& rightTags) {
  const auto rights = right.inDefinitionOrder();
  FirstComeQueue<PropertyIdentity, std::size_t, PropertyIdentityHash> waiting;
  for (std::size_t i = 0; i < rights.size(); ++i) waiting.add(PropertyIdentity(*rights[i], rightTags), i);

  std::vector<PropertyPair> pairs;
  std::vector<bool> isPaired(rights.size());
  for (const Element* property : left.inDefinitionOrder()) {
    const auto* found = waiting.take(PropertyIdentity(*property, leftTags));
    pairs.push_back({property, found == nullptr ? nullptr : rights[*found]});
    if (found != nullptr) isPaired[*found] = true;
  }
  for (std::size_t i = 0; i < rights.size(); ++i) {
    if (!isPaired[i]) pairs.push_back({nullptr, rights[i]});
  }
  return pairs;
}

}  // namespace Vantor
