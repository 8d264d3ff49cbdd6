#pragma once

#include <cstddef>
#include <optional>

#include "Core/DataIO/SeekableSource.h"
#include "Core/MXF/FileStructure.h"
#include "Core/Types/Rational.h"

namespace Vantor::MXF {

/// What a segment of an index table (ST 377-1) states about all of its entries.
struct IndexTableSegment {
  uint32 indexSID = 0;
  Types::Rational editRate;  ///< edit units per second, in which the table counts
};

/// Reads the first segment of an index table in a partition, which stands behind the header metadata and before the
/// essence. Reads keys, lengths and two values, whatever the size of the table.
/// @param number  the partition's, in file order; within the structure.
/// @return none when the partition counts no bytes of index table, or none that can be read stands there.
/// @throws Exceptions::IOError when the file cannot be read.
std::optional<IndexTableSegment> readIndexTable(DataIO::SeekableSource& source, const FileStructure& structure,
                                                std::size_t number);

}  // namespace Vantor::MXF
