#pragma once

#include <string>

#include "Core/Dictionary/Definitions.h"
#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor::Tool {

/// A row for each known set by kind, in file order: the text that chooses it (`PartitionMetadata::find`), and what sets
/// it apart from others of its kind, with the set that owns it.
/// @param definitions  name labels.
std::string listOfSets(const PartitionMetadata& metadata, const Definitions& definitions);

}  // namespace Vantor::Tool
