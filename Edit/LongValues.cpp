#include "Edit/LongValues.h"

#include <algorithm>

#include "Core/KLV/Keys.h"

namespace Vantor::Edit {

namespace {

constexpr std::size_t kMostInTwoBytes = 0xFFFF;

std::size_t largestValueOf(const MetadataSet& set) {
  std::size_t largest = 0;
  for (const Element* property : set.inDefinitionOrder()) {
    const auto* value = property->wireValue();
    if (value != nullptr) largest = std::max<std::size_t>(largest, value->encodedSize());
  }
  return largest;
}

}  // namespace

std::vector<LongValue> longValuesOf(const PartitionMetadata& metadata) {
  std::vector<LongValue> found;
  for (const MetadataSet* set : metadata.sets()) {
    if (!KLV::isLocalSet(set->key()) || KLV::hasBERLengths(set->key())) continue;
    const auto size = largestValueOf(*set);
    if (size > kMostInTwoBytes) found.push_back({set->fullName(), size});
  }
  return found;
}

}  // namespace Vantor::Edit
