#pragma once

#include "Core/MXF/FileStructure.h"
#include "Core/MXF/PartitionChoice.h"
#include "Core/Platform/Path.h"

/// Files whose header partition is not the one with the best metadata.
namespace Vantor::Tool {

/// The partition to read when none is chosen: the header partition, unless another one is in a better state.
MXF::PartitionChoice betterThanHeader(const MXF::FileStructure& structure);

/// What a choice means in a file: for "best" the header partition, the footer partition or a number, any other as it
/// is. The header partition for a file whose structure cannot be read: reading that shows why.
MXF::PartitionChoice partitionIn(const Path& file, const MXF::PartitionChoice& choice);

/// Prints a message when the header partition of an MXF file is read although another one is in a better state.
/// @param isChosen  whether the user chose the partition: then nothing is printed.
void noteBetterPartition(const Path& file, bool isChosen);

}  // namespace Vantor::Tool
