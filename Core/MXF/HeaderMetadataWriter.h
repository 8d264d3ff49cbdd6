#pragma once

#include "Core/DataIO/DataSink.h"
#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor::MXF {

/// In which order the sets of a partition are written.
enum class SetOrder {
  /// As they were read or made, dark sets among them.
  kFile,
  /// As `PartitionMetadata::calculateSerializationOrder` has it, the Preface first; then the dark sets.
  kSerialization
};

/// Writes the header metadata of a partition as KLV: the primer pack, then the sets (ST 377-1). Length fields have the
/// octets that they were read with. What was read from a file and not changed is written, in file order, as the same
/// bytes set by set.
///
/// Properties that have no local tag yet get one and are entered into the partition's primer.
/// @throws InvalidLength when there are too few dynamic tags, or a primer or set is too long for KLV; InvalidFormat
///         naming the key of a dark set that readers would take for something else: one that is no set's, such as a
///         partition pack's, or that of a known set when the value is no local set. Nothing is written then.
void writeHeaderMetadata(PartitionMetadata& partition, SetOrder order, DataIO::DataSink& sink);

/// Writes an MXF file that holds nothing but this header metadata: a header partition, closed and complete, KAG 1, and
/// a random index pack. Operational pattern and essence containers are taken from the Preface.
/// @throws InvalidFormat when there is no Preface, or it has no operational pattern; also as above, and what the sink
///         throws. Nothing is written before everything is known.
void writeHeaderOnlyFile(PartitionMetadata& partition, SetOrder order, DataIO::DataSink& sink);

}  // namespace Vantor::MXF
