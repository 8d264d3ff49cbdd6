#pragma once

#include <cstddef>
#include <optional>

#include "Core/DataIO/SeekableSource.h"
#include "Core/MXF/FileStructure.h"
#include "Core/MXF/KLVHeader.h"
#include "Core/Platform/Containers.h"
#include "Core/Platform/Types.h"

namespace Vantor::MXF {

/// The bytes of a partition that belong to its header metadata (ST 377-1): from the primer pack's key, which stands
/// behind the partition pack and any fill, to where HeaderByteCount ends, so with fill behind the sets.
struct MetadataRoom {
  uint64 offset = 0;                ///< of the primer pack, from the start of the file
  uint64 size = 0;                  ///< in bytes
  bool hasObjectDirectory = false;  ///< or a root of one, or several; see ObjectDirectory.h
  uint64 end() const { return offset + size; }
};

/// Finds the room of a partition's header metadata. Reads keys and lengths up to the essence, but no values; also in a
/// partition without header metadata.
/// @param number  the partition's, in file order; within the structure.
/// @return none when the partition has no header metadata.
/// @throws Exceptions::ParseError with the offset when HeaderByteCount cannot be trusted with a change: it does not end
/// between two KLVs of this partition, takes in what is no header metadata, or sets follow behind it; or when it is not
/// a primer pack that stands at the start. Exceptions::IOError when an object directory, or its root, stands outside of
/// header metadata, before the essence.
std::optional<MetadataRoom> findMetadataRoom(DataIO::SeekableSource& source, const FileStructure& structure,
                                             std::size_t number);

/// The same without the fill at its end, however much that is.
MetadataRoom withoutFill(DataIO::SeekableSource& source, const MetadataRoom& room);

/// The bytes in a room.
Bytes readRoom(DataIO::SeekableSource& source, const MetadataRoom& room);

/// Whether the same bytes stand in two rooms. Reads them in small pieces.
bool haveSameBytes(DataIO::SeekableSource& source, const MetadataRoom& left, const MetadataRoom& right);

/// Refuses KLVs outside of header metadata that hold offsets of sets, which a change would leave wrong: an object
/// directory and its root.
/// @param partition  the number of the KLV's partition, for the message.
/// @throws Exceptions::IOError with the KLV's offset.
void refuseDirectory(const DataIO::SeekableSource& source, const KLVHeader& klv, std::size_t partition);

}  // namespace Vantor::MXF
