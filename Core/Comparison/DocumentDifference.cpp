#include "Core/Comparison/DocumentDifference.h"

#include <algorithm>

#include "Core/Comparison/PropertyIdentity.h"
#include "Core/KLV/BERLength.h"

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
  return leftGroup != nullptr && rightGroup != nullptr && leftGroup->key() == rightGroup->key() &&
         leftGroup->value() == rightGroup->value();
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

uint8 writtenLengthOctets(uint8 octets, uint64 size) {
  return octets == 0 || octets > KLV::kMaxBEROctets ? uint8{0} : KLV::berOctets(size, octets);
}

bool hasOtherLengthOctets(const MetadataSet& before, const MetadataSet& after) {
  const auto octetsOf = [](const MetadataSet& set) {
    const auto* group = asGroup(&set);
    return writtenLengthOctets(set.berLength(), group == nullptr ? 0 : group->value().size());
  };
  return octetsOf(after) != 0 && octetsOf(after) != octetsOf(before);
}

DarkKLVs darkKLVsOf(const PartitionMetadata& partition) {
  DarkKLVs all;
  const auto add = [&all](const KLV::Key& key, uint8 octets, Bytes value) {
    octets = writtenLengthOctets(octets, value.size());
    all[{key, std::move(value)}].push_back(octets);
  };
  for (auto at = partition.darkBegin(); at != partition.darkEnd(); ++at) {
    const auto& value = (*at)->value();
    add((*at)->key(), (*at)->berLength(), Bytes(value.rawBuffer(), value.rawBuffer() + value.serializedSize()));
  }
  for (const MetadataSet* set : partition.sets()) {
    const auto* group = asGroup(set);
    if (group != nullptr && group->instanceUID() == nullptr) add(group->key(), group->berLength(), group->value());
  }
  return all;
}

namespace {

/// Takes out what is in both.
void removeCommon(LengthOctets& left, LengthOctets& right) {
  const auto isInRight = [&right](uint8 octets) {
    const auto found = std::find(right.begin(), right.end(), octets);
    if (found == right.end()) return false;
    right.erase(found);
    return true;
  };
  left.erase(std::remove_if(left.begin(), left.end(), isInRight), left.end());
}

}  // namespace

DarkDifference compareDark(LengthOctets before, LengthOctets after) {
  removeCommon(before, after);
  // What says nothing of its length field stands for any.
  std::stable_partition(after.begin(), after.end(), [](uint8 octets) { return octets == 0; });
  DarkDifference difference;
  const auto pairs = std::min(before.size(), after.size());
  for (std::size_t i = 0; i < pairs; ++i) {
    if (after[i] != 0) difference.recoded.emplace_back(before[i], after[i]);
  }
  difference.removed.assign(before.begin() + static_cast<std::ptrdiff_t>(pairs), before.end());
  difference.added.assign(after.begin() + static_cast<std::ptrdiff_t>(pairs), after.end());
  return difference;
}

}  // namespace Vantor::DocumentDifference
