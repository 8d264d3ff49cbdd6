#include "Edit/LongValues.h"

#include <algorithm>

#include "Core/KLV/Keys.h"
#include "Core/KLV/LocalSet.h"

namespace Vantor::Edit {

namespace {

constexpr std::size_t kMostInTwoBytes = 0xFFFF;

bool hasTwoByteLengths(const KLV::Key& key) {
  return KLV::isLocalSet(key) && KLV::localSetCoding(key) == KLV::LocalSetCoding::kTwoByteLengths;
}

std::size_t sizeOf(const Element& property) {
  return property.wireValue() == nullptr ? 0 : property.wireValue()->encodedSize();
}

std::size_t largestValueOf(const MetadataSet& set) {
  std::size_t largest = 0;
  for (const Element* property : set.inDefinitionOrder()) largest = std::max(largest, sizeOf(*property));
  return largest;
}

}  // namespace

std::vector<LongValue> longValuesOf(const PartitionMetadata& metadata) {
  std::vector<LongValue> found;
  for (const MetadataSet* set : metadata.sets()) {
    const std::size_t size = hasTwoByteLengths(set->key()) ? largestValueOf(*set) : 0;
    if (size > kMostInTwoBytes) found.push_back({set->fullName(), size});
  }
  return found;
}

}  // namespace Vantor::Edit
