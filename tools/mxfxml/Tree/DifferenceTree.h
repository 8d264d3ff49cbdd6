#pragma once

#include <vector>

#include "Core/Comparison/PartitionComparison.h"
#include "Terminal/TreeText.h"

namespace Vantor::Tool {

/// The differences between two partitions as a tree: the sets that differ and those that own them, with the signs '+'
/// for what only the right one has, '-' for what only the left one has and '~' for other values. Takes time in
/// proportion to the partitions.
/// @param pairs  of both partitions, as `comparison` paired them.
std::vector<TreeLine> differenceTree(const PartitionMetadata& left, const PartitionMetadata& right,
                                     const SetPairing& pairs, const PartitionComparison& comparison,
                                     const TreeStyle& style);

}  // namespace Vantor::Tool
