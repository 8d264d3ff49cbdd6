#pragma once

#include <vector>

#include "Core/Metadata/MetadataSet.h"
#include "Core/Metadata/PartitionDictionary.h"

namespace Vantor {

/// The same property in a set of one partition and in a set of another; null where that set does not have it.
struct PropertyPair {
  const Element* left;
  const Element* right;
};

/// Pairs the present properties of two sets by `PropertyIdentity`; several with one identity in their order.
/// @param leftTags, rightTags  of the sets' partitions.
/// @return the left set's properties in the order of its definition, then the right set's that have no partner.
std::vector<PropertyPair> pairProperties(const MetadataSet& left, const PartitionDictionary& leftTags,
                                         const MetadataSet& right, const PartitionDictionary& rightTags);

/// Joins the pair of a value that did not decode with that of a decoded one of the same property, each of which is
/// alone.
/// @param pairs  of `pairProperties`, of these sets.
void joinUnread(std::vector<PropertyPair>& pairs, const MetadataSet& left, const MetadataSet& right);

}  // namespace Vantor
