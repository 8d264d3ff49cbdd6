#pragma once

#include "Core/DataIO/File.h"
#include "Core/MXF/FileStructure.h"

namespace Vantor::MXF {

/// Finds out whether the header metadata of a file can be replaced without leaving anything in the file wrong.
///
/// Refused are: files that are still being written, or whose writing was given up, which are those with an open header
/// partition and no footer partition (an open header partition alone is all right); files with damage, or with bytes
/// that cannot be followed; files that are cut off, so that the footer partition or what the random index pack lists is
/// missing; files with a partition for which findMetadataRoom() throws.
/// @throws Exceptions::ParseError with the offset of the damage, or Exceptions::IOError with the reason and the path.
void refuseUnsafe(DataIO::File::FileDataSource& source, const FileStructure& structure);

}  // namespace Vantor::MXF
