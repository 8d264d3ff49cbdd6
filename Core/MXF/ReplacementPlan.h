#pragma once

#include <vector>

#include "Core/DataIO/File.h"
#include "Core/MXF/FileStructure.h"
#include "Core/MXF/HeaderMetadataReplacement.h"
#include "Core/MXF/MetadataRoom.h"

namespace Vantor::MXF {

/// A replacement and the room of the header metadata that it replaces.
struct PlannedReplacement {
  std::size_t partition = 0;
  MetadataRoom room;
  const Bytes* bytes = nullptr;  ///< the replacement's; never null

  /// Whether the bytes, and a fill item or nothing behind them, take exactly the room.
  bool fits() const;
};

/// The replacements, checked, in the order of their partitions. `replacements` outlives the result.
/// @throws Exceptions::InvalidFormat naming the partition when there is none with its number, or it has no header
/// metadata or two replacements; or when a replacement's bytes are not whole KLVs of header metadata, a primer pack
/// first. Also what refuseUnsafe() throws.
std::vector<PlannedReplacement> planReplacements(DataIO::SeekableSource& source, const FileStructure& structure,
                                                 const MetadataReplacements& replacements);

/// How many bytes header metadata with the fill behind them take in a copy of the file: their old room where they fit,
/// else the fewest that differ from that by a multiple of the KAG size.
/// @throws Exceptions::InvalidLength when the KAG size is over kMaxKAGSize and they do not fit.
uint64 sizeInCopy(const PlannedReplacement& replacement, uint32 kagSize);

}  // namespace Vantor::MXF
