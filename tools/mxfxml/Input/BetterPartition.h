#pragma once

#include <vector>

#include "Core/MXF/PartitionChoice.h"
#include "Core/Platform/Path.h"
#include "Summary/Summary.h"

/// Files whose header partition is not the one with the best metadata.
namespace Vantor::Tool {

/// The partition to read when none is chosen: the header partition, unless another one is in a better state.
MXF::PartitionChoice betterThanHeader(const std::vector<Summary::Partition>& partitions);

/// Prints a message when the header partition of an MXF file is read although another one is in a better state.
/// @param isChosen  whether the user chose the partition: then nothing is printed.
void noteBetterPartition(const Path& file, bool isChosen);

}  // namespace Vantor::Tool
