#pragma once

#include <string>
#include <vector>

#include "Core/Comparison/PropertyPairing.h"
#include "Core/Metadata/PartitionMetadata.h"

/// How the sets of two states of one partition differ.
namespace Vantor::Edit {

/// How closely values are compared.
enum class Fidelity {
  kWhole,  ///< every octet, except final NULs of texts and the item size of empty collections
  kLetter  ///< what the exact form shows: the first five components of pixel layouts, texts of items without padding,
           ///< no empty collections
};

/// Whether two properties have the same value. @param base, theirs  null for a property that a set does not have.
bool areSame(const Element* base, const Element* theirs, Fidelity fidelity = Fidelity::kWhole);

/// The only set with an InstanceUID; null when none or several have it.
const MetadataSet* findOnly(const PartitionMetadata& partition, const Types::UUID& instanceUID);

inline const DarkParsedGroup* asGroup(const MetadataSet* set) { return dynamic_cast<const DarkParsedGroup*>(set); }

/// The properties of two sets that are not the same, in pairs; the left ones are those of the base.
std::vector<PropertyPair> differingProperties(const MetadataSet& base, const PartitionDictionary& baseTags,
                                              const MetadataSet& theirs, const PartitionDictionary& theirTags,
                                              Fidelity fidelity = Fidelity::kWhole);

/// Whether two sets, dark groups included, have the same content. The sizes of their length fields do not count.
bool areSame(const MetadataSet& base, const PartitionDictionary& baseTags, const MetadataSet& theirs,
             const PartitionDictionary& theirTags, Fidelity fidelity = Fidelity::kWhole);

/// The content of a set, except its InstanceUID, as octets that are equal for equal content.
std::string contentOf(const MetadataSet& set, const PartitionDictionary& tags);

/// The size in octets with which a length field is written; 0 leaves it to the writer.
/// @param octets  the size asked for; a value that needs more gets more.
/// @param size    the value of the length field.
uint8 writtenLengthOctets(uint8 octets, uint64 size);

/// Whether a set has a length field of another size in theirs. Sets that were not read from KLV leave the size to the
/// writer.
bool hasOtherLengthOctets(const MetadataSet& base, const MetadataSet& theirs);

}  // namespace Vantor::Edit
