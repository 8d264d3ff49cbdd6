#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Core/Comparison/PropertyPairing.h"
#include "Core/Metadata/PartitionMetadata.h"

/// How the sets of two states of one partition differ.
namespace Vantor::Edit {

/// How much of a value two states are compared by.
enum class Fidelity {
  kWhole,  ///< every octet, but for final NULs of texts and the item size of empty collections
  kLetter  ///< what documents without a description show: pixel layouts up to the fifth component, texts of items
           ///< without their padding, no empty collection
};

/// Whether two properties hold the same. @param base, theirs  null for a property that a set does not have.
bool areSame(const Element* base, const Element* theirs, Fidelity fidelity = Fidelity::kWhole);

/// The set with an InstanceUID; null for none and for several.
const MetadataSet* findOnly(const PartitionMetadata& partition, const Types::UUID& instanceUID);

inline const DarkParsedGroup* asGroup(const MetadataSet* set) { return dynamic_cast<const DarkParsedGroup*>(set); }

/// The properties of two sets that are not the same, in pairs; the left ones are those of the base.
std::vector<PropertyPair> differingProperties(const MetadataSet& base, const PartitionDictionary& baseTags,
                                              const MetadataSet& theirs, const PartitionDictionary& theirTags,
                                              Fidelity fidelity = Fidelity::kWhole);

/// Whether two sets, dark groups included, hold the same, whatever the octets of their length fields.
bool areSame(const MetadataSet& base, const PartitionDictionary& baseTags, const MetadataSet& theirs,
             const PartitionDictionary& theirTags, Fidelity fidelity = Fidelity::kWhole);

/// The content of a set besides its InstanceUID, as octets that are equal for sets that hold the same.
std::string contentOf(const MetadataSet& set, const PartitionDictionary& tags);

/// Octets of a length field: as many as are written for that many, or 0 for the writer's choice.
/// @param size  the value of the length field.
uint8 writtenLengthOctets(uint8 octets, uint64 size);

/// Whether the length field of a set has another size in their state. Sets that were not read from KLV leave the size
/// to the writer.
bool hasOtherLengthOctets(const MetadataSet& base, const MetadataSet& theirs);

/// A KLV without InstanceUID, identified by its key and octets.
using DarkKey = std::pair<KLV::Key, Bytes>;
/// `writtenLengthOctets` of each of the KLVs with the same content.
using LengthOctets = std::vector<uint8>;
using DarkKLVs = std::map<DarkKey, LengthOctets>;
DarkKLVs darkKLVsOf(const PartitionMetadata& partition);

/// How KLVs of one content differ: in number, and in their length fields.
struct DarkDifference {
  LengthOctets removed = {};
  LengthOctets added = {};
  std::vector<std::pair<uint8, uint8>> recoded = {};  ///< base and theirs; theirs is never 0
};
DarkDifference compareDark(LengthOctets base, LengthOctets theirs);

}  // namespace Vantor::Edit
