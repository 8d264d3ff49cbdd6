#pragma once

#include <string>
#include <vector>

#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor::Tool {

/// The sets of a kind, in file order.
/// @param name  their symbol in the register or their name in XML.
std::vector<const MetadataSet*> setsNamed(const PartitionMetadata& partition, const std::string& name);

/// Whether a text is an InstanceUID in one of the forms below.
bool isInstanceUID(const std::string& text);

/// Finds the set that the user means.
/// @param text  an InstanceUID, as "urn:uuid:...", as dotted pairs or as the bare 8-4-4-4-12 digits of a UUID; or else
///              the name of a kind of sets, its symbol in the register or its name in XML.
/// @return the first such set in file order.
/// @throws CommandError naming the text when there is none.
const MetadataSet& findStartSet(const PartitionMetadata& partition, const std::string& text);

}  // namespace Vantor::Tool
