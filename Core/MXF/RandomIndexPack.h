#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "Core/DataIO/SeekableSource.h"
#include "Core/MXF/KLVHeader.h"
#include "Core/Platform/Types.h"

namespace Vantor::MXF {

/// Reads the random index pack at the end of a file (ST 377-1): where the file's partitions start.
/// @param runIn  the offset of the header partition pack in the file.
/// @return the partitions' offsets in the file, run-in included, each greater than the one before; it was not checked
///         whether partition packs stand there. Empty when the file does not end with a random index pack, or with one
///         that contradicts itself.
std::vector<uint64> readRandomIndexPack(DataIO::SeekableSource& source, uint64 runIn);

/// Finds the random index pack, with right entries or wrong ones: at the end of the file, else, in a file with
/// something behind it, among the KLVs of the last partition.
/// @param lastPackEnd  where the last partition's pack ends.
/// @return none when the file has none. It is searched to the end then, or to where zeros stand instead of a key.
/// @throws Exceptions::ParseError with the offset where the KLVs of the last partition cannot be followed, where they
/// lead to a further partition pack or random index pack, or when the pack's length is not one of a random index pack.
std::optional<KLVHeader> findRandomIndexPack(DataIO::SeekableSource& source, uint64 lastPackEnd);

/// Reads the entries of a pack that findRandomIndexPack() found, one after the other, right or wrong.
/// @param take  gets the BodySID and the offset from the header partition pack. It may not move the source.
void readRandomIndexEntries(DataIO::SeekableSource& source, const KLVHeader& pack,
                            const std::function<void(uint32 bodySID, uint64 offset)>& take);

}  // namespace Vantor::MXF
