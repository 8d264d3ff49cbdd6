#pragma once

#include <vector>

#include "Core/Comparison/PropertyPairing.h"
#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor::Edit {

/// A set in two states of its partition, and the properties that differ.
struct EditedSet {
  const MetadataSet* before;
  MetadataSet* after;
  std::vector<PropertyPair> properties;  ///< the left ones are those before
};

/// The sets that both states have under one InstanceUID and that differ, in the order of the later state. Dark groups
/// and sets whose InstanceUID others have, too, are left out.
std::vector<EditedSet> editedSets(const PartitionMetadata& before, PartitionMetadata& after);

}  // namespace Vantor::Edit
