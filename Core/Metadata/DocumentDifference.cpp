#include "Core/Metadata/DocumentDifference.h"

#include "Core/Metadata/PropertyIdentity.h"

namespace Vantor::DocumentDifference {

Bytes octetsOf(const Element& property) {
  const auto* value = property.wireValue();
  if (value == nullptr) return {};
  return Bytes(value->rawBuffer(), value->rawBuffer() + value->encodedSize());
}

bool isSame(const Element* left, const Element* right) {
  if (left == nullptr || right == nullptr) return left == right;
  const auto *leftValue = left->wireValue(), *rightValue = right->wireValue();
  if (leftValue == nullptr || rightValue == nullptr) return leftValue == rightValue;
  return leftValue->identifier() == rightValue->identifier() && octetsOf(*left) == octetsOf(*right);
}

const MetadataSet* findOnly(const PartitionMetadata& partition, const Types::UUID& instanceUID) {
  const auto& found = partition.findByInstanceUID(instanceUID);
  return found.size() == 1 ? found.front() : nullptr;
}

std::vector<PropertyPair> differingProperties(const MetadataSet& left, const PartitionDictionary& leftTags,
                                              const MetadataSet& right, const PartitionDictionary& rightTags) {
  std::vector<PropertyPair> differing;
  for (const auto& pair : pairProperties(left, leftTags, right, rightTags)) {
    if (!isSame(pair.left, pair.right)) differing.push_back(pair);
  }
  return differing;
}

bool areSame(const MetadataSet& left, const PartitionDictionary& leftTags, const MetadataSet& right,
             const PartitionDictionary& rightTags) {
  const auto *leftGroup = asGroup(&left), *rightGroup = asGroup(&right);
  if (leftGroup == nullptr && rightGroup == nullptr) {
    return left.definition() == right.definition() && differingProperties(left, leftTags, right, rightTags).empty();
  }
  return leftGroup != nullptr && rightGroup != nullptr && leftGroup->value() == rightGroup->value();
}

std::string contentOf(const MetadataSet& set, const PartitionDictionary& tags) {
  std::string content = set.name();
  const auto add = [&content](const void* octets, std::size_t size) {
    content += " " + std::to_string(size) + ":";
    content.append(static_cast<const char*>(octets), size);
  };
  for (const Element* property : set.inDefinitionOrder()) {
    if (set.definition() != nullptr && &property->metaAttribute() == set.definition()->instanceUIDAttribute()) continue;
    const PropertyIdentity identity(*property, tags);
    const uint64 name[] = {static_cast<uint64>(identity.kind), identity.label.head, identity.label.tail, identity.tag};
    add(name, sizeof name);
    const Bytes octets = octetsOf(*property);
    add(octets.data(), octets.size());
  }
  return content;
}

DarkCounts countDark(const PartitionMetadata& partition) {
  DarkCounts counts;
  for (auto at = partition.darkBegin(); at != partition.darkEnd(); ++at) {
    const auto& value = (*at)->value();
    ++counts[{(*at)->key(), Bytes(value.rawBuffer(), value.rawBuffer() + value.serializedSize())}];
  }
  for (const MetadataSet* set : partition.sets()) {
    const auto* group = asGroup(set);
    if (group != nullptr && group->instanceUID() == nullptr) ++counts[{group->key(), group->value()}];
  }
  return counts;
}

}  // namespace Vantor::DocumentDifference
