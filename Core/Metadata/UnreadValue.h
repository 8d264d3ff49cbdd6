#pragma once

#include <string>
#include <vector>

#include "Core/Metadata/MetadataSet.h"
#include "Core/Types/SimpleDataType.h"

/// Properties that were read as octets, although the dictionary may know them: their values are in another form than
/// that of their type. Documents keep the octets; whatever shows values decodes those forms that files are known to
/// have.
namespace Vantor {

class PartitionMetadata;

/// The value in a form that its type does not have; null when there is none for these octets:
///
///     ProductVersion      9 octets, with one for the release (ST 2001 and the registers have it so)
///     arrays and batches  items of another size than the type's, as runs of octets: channel status data, 24 octets
///                         for each channel (ST 382)
auto_ptr<Types::SimpleDataType> decodeOtherForm(const MetaMetadata::MetaElement& definition, const uint8* octets,
                                                std::size_t size);

/// The size of the items that a standard gives to a list, where it is not that of the type: 24 for the data of the
/// channels of AES3 (ST 382); 0 for other properties.
uint32 otherItemSize(const MetaMetadata::MetaElement& definition);

/// A property that was read as octets.
struct UnreadValue {
  const MetadataSet* set;
  const Element* element;
  const MetaMetadata::MetaElement* definition;  ///< null when the dictionary has none
  auto_ptr<Types::SimpleDataType> value;        ///< what the octets are all the same; null when nobody knows
  std::string reason;                           ///< why they are not the property's value, for people
};

/// @param element  an unknown property of the set.
UnreadValue unreadValueOf(const MetadataSet& set, const Element& element);

/// Those of all sets, in file order, dark sets left out.
std::vector<UnreadValue> unreadValues(const PartitionMetadata& metadata);

}  // namespace Vantor
