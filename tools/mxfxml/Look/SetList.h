#pragma once

#include <cstddef>
#include <string>

#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor::Tool {

struct SetListOptions {
  std::size_t width = 80;         ///< of a line, in characters
  bool listsDefinitions = false;  ///< of a MetaDictionary, one by one; else their number by kind
};

/// A row for each known set by kind, in file order: the text that chooses it (`PartitionMetadata::find`), and what sets
/// it apart from others of its kind, with the set that owns it and the beginning of its InstanceUID, which chooses it,
/// too. The first set of a kind has its common name.
std::string listOfSets(const PartitionMetadata& metadata, const SetListOptions& options);

}  // namespace Vantor::Tool
