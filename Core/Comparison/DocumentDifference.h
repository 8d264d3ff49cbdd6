#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Core/Comparison/PropertyPairing.h"
#include "Core/Metadata/PartitionMetadata.h"

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

/// Whether two sets, dark groups included, say the same, whatever the octets of their length fields.
bool areSame(const MetadataSet& left, const PartitionDictionary& leftTags, const MetadataSet& right,
             const PartitionDictionary& rightTags);

/// What a set says besides its InstanceUID, as octets that are equal for sets that say the same.
std::string contentOf(const MetadataSet& set, const PartitionDictionary& tags);

/// Octets of a length field: as many as are written for that many, or 0 where a document leaves them to the writer.
/// @param size  what the length field tells.
uint8 writtenLengthOctets(uint8 octets, uint64 size);

/// Whether a document says that the length field of a set has other octets after an edit. Most of its elements do not
/// say how many: the sets have those of every new set then.
bool hasOtherLengthOctets(const MetadataSet& before, const MetadataSet& after);

/// A KLV that is told by what it holds, for want of an InstanceUID.
using DarkKey = std::pair<KLV::Key, Bytes>;
/// For each of the KLVs with the same content, `writtenLengthOctets`.
using LengthOctets = std::vector<uint8>;
using DarkKLVs = std::map<DarkKey, LengthOctets>;
DarkKLVs darkKLVsOf(const PartitionMetadata& partition);

/// How KLVs of one content differ: by how many of them there are, and by their length fields.
struct DarkDifference {
  LengthOctets removed = {};
  LengthOctets added = {};
  std::vector<std::pair<uint8, uint8>> recoded = {};  ///< before and after; never to 0, which says nothing
};
DarkDifference compareDark(LengthOctets before, LengthOctets after);

}  // namespace Vantor::DocumentDifference
