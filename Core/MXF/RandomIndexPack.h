#pragma once

#include <vector>

#include "Core/DataIO/File.h"
#include "Core/Platform/Types.h"

namespace Vantor::MXF {

/// Reads the random index pack at the end of a file (ST 377-1): where the file's partitions start.
/// @param runIn  the offset of the header partition pack in the file.
/// @return the partitions' offsets in the file, run-in included, each greater than the one before; whether partition
///         packs stand there was not looked at. Empty when the file does not end with a random index pack, or with one
///         that contradicts itself.
std::vector<uint64> readRandomIndexPack(DataIO::File::FileDataSource& source, uint64 runIn);

}  // namespace Vantor::MXF
