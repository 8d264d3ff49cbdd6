#pragma once

#include <optional>
#include <vector>

#include "Core/DataIO/File.h"
#include "Core/MXF/FileStructure.h"
#include "Core/MXF/MetadataRoom.h"
#include "Core/MXF/Unchecked.h"

namespace Vantor::MXF {

/// Checks that the header metadata of a file can be replaced without leaving anything in the file wrong.
///
/// Refused are: files that are still being written or were never finished, with an open header partition and no footer
/// partition (an open header partition alone is fine); files with damage, or with bytes that cannot be followed; files
/// that are cut off, so that the footer partition or what the random index pack lists is missing; files with a
/// partition for which findMetadataRoom() throws.
/// @param unchecked  null for all of this. Otherwise only the metadata of the header partition and object directories
///                   have to be sound, as far as a change in place of these metadata needs that, and it gets the rest.
/// @return what findMetadataRoom() finds for each partition; none also where `unchecked` has the metadata or the pack.
/// @throws Exceptions::ParseError with the offset of the damage, or Exceptions::IOError with the reason and the path.
std::vector<std::optional<MetadataRoom>> refuseUnsafe(DataIO::SeekableSource& source, const FileStructure& structure,
                                                      std::vector<Unchecked>* unchecked = nullptr);

/// Checks that parts of the file can move, which demands more: no KLV may hold an offset that a copy would leave wrong.
/// Refused are: files with a partition pack, or a random index pack, that is not the structure's, such as one that the
/// random index pack and the links leave out; files with bytes between the partitions that cannot be followed, so that
/// such packs may be among them; files with an object directory among the essence.
///
/// Reads key and length of every KLV outside of header metadata. Large files have a million of them, which takes some
/// seconds when the system has none of the file in memory.
/// @param rooms  what refuseUnsafe() returned.
/// @throws as refuseUnsafe().
void refuseUnlisted(DataIO::SeekableSource& source, const FileStructure& structure,
                    const std::vector<std::optional<MetadataRoom>>& rooms);

}  // namespace Vantor::MXF
