#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Metadata/PropertyPairing.h"

/// How the contents of two documents differ, of one partition before and after an edit.
namespace Vantor::DocumentDifference {

/// Whether two properties are there and say the same, or are both not there.
bool isSame(const Element* left, const Element* right);

/// The octets of a property's value; none without a value.
Bytes octetsOf(const Element& property);

/// The set with an InstanceUID, where there is only one.
const MetadataSet* findOnly(const PartitionMetadata& partition, const Types::UUID& instanceUID);

inline const DarkParsedGroup* asGroup(const MetadataSet* set) { return dynamic_cast<const DarkParsedGroup*>(set); }

/// The properties of two sets that are not the same, in pairs.
std::vector<PropertyPair> differingProperties(const MetadataSet& left, const PartitionDictionary& leftTags,
                                              const MetadataSet& right, const PartitionDictionary& rightTags);

/// Whether two sets, dark groups included, say the same.
bool areSame(const MetadataSet& left, const PartitionDictionary& leftTags, const MetadataSet& right,
             const PartitionDictionary& rightTags);

/// What a set says besides its InstanceUID, as octets that are equal for sets that say the same.
std::string contentOf(const MetadataSet& set, const PartitionDictionary& tags);

/// A KLV that is told by what it holds, for want of an InstanceUID.
using DarkKey = std::pair<KLV::Key, Bytes>;
using DarkCounts = std::map<DarkKey, int64>;
DarkCounts countDark(const PartitionMetadata& partition);

}  // namespace Vantor::DocumentDifference
