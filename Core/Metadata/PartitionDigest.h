#pragma once

#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor {

/// A CRC-64 of all metadata of a partition: every KLV in file order, with key, length field and value as they would be
/// written, then the value of the primer pack.
///
/// It depends on the octets alone: a file gives one digest whatever dictionary it is read with. It detects changes, not
/// forgery.
/// @throws what `MetadataSet::serialize` throws; the partition is only read.
uint64 digestOf(const PartitionMetadata& partition);

}  // namespace Vantor
