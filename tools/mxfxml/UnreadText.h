#pragma once

#include <string>

#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor::Tool {

/// A line for each kind of unknown property: how many sets of a kind have it, why it was not read, and its value in the
/// first of them. In file order; empty when there is none.
std::string listOfUnread(const PartitionMetadata& metadata);

}  // namespace Vantor::Tool
