#include "Core/Comparison/PropertyPairing.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "Core/Comparison/FirstComeQueue.h"
#include "Core/Comparison/PropertyIdentity.h"

namespace Vantor {

namespace {

bool isUnread(const Element& property) { return property.metaAttribute().asUnknown() != nullptr; }

bool isMisplaced(const Element& property) {
  return dynamic_cast<const MetaMetadata::MisplacedAttribute*>(&property.metaAttribute()) != nullptr;
}

/// Misplaced properties stay alone.
bool mayJoin(const Element& left, const Element& right) {
  return isUnread(left) != isUnread(right) && !isMisplaced(left) && !isMisplaced(right);
}

}  // namespace

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

void joinUnread(std::vector<PropertyPair>& pairs, const MetadataSet& left, const MetadataSet& right) {
  std::unordered_map<KLV::Key, PropertyPair*, KLV::KeyHash> waiting;
  for (auto& pair : pairs) {
    const auto* definition = pair.left == nullptr ? right.definitionOf(*pair.right) : nullptr;
    if (definition != nullptr) waiting.emplace(definition->key().key(), &pair);
  }
  for (auto& pair : pairs) {
    const auto* definition = pair.right != nullptr || waiting.empty() ? nullptr : left.definitionOf(*pair.left);
    const auto found = definition == nullptr ? waiting.end() : waiting.find(definition->key().key());
    if (found == waiting.end() || !mayJoin(*pair.left, *found->second->right)) continue;
    std::swap(pair.right, found->second->right);
    waiting.erase(found);
  }
  const auto isEmpty = [](const PropertyPair& pair) { return pair.left == nullptr && pair.right == nullptr; };
  pairs.erase(std::remove_if(pairs.begin(), pairs.end(), isEmpty), pairs.end());
}

}  // namespace Vantor
