#pragma once

#include <cstddef>
#include <memory>

#include "Core/MXF/FileStructure.h"
#include "Core/MXF/PartitionChoice.h"
#include "Core/MetaMetadata/Dictionary.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Limits.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Types.h"

namespace Vantor::MXF {

/// Header metadata with damage, or cut off. `salvageHeaderMetadata` reads what is left of them.
class DamagedMetadata : public Exceptions::ParseError {
 public:
  /// @param cause  what is wrong. @param offset  of the damaged KLV. @param wholeSets  that stand before it.
  DamagedMetadata(const Exceptions::ParseError& cause, uint64 offset, std::size_t wholeSets);

  /// Of the damaged KLV, in the file.
  uint64 offset() const noexcept { return offset_; }
  /// How many sets of the partition stand before the damage, dark sets included.
  std::size_t wholeSets() const noexcept { return wholeSets_; }

 private:
  uint64 offset_;
  std::size_t wholeSets_;
};

/// Reads the header metadata of one partition of an MXF file (ST 377-1): fill, a primer pack, then sets and fill.
///
/// The metadata ends where the partition pack's count of bytes ends, if that is between two KLVs and no further local
/// set follows there. A count that is 0, too small or too large is ignored: the metadata then ends before the first KLV
/// that cannot be part of it, which is a partition pack, an index table segment, a random index pack, an essence or
/// system item, or generic stream data. It also ends with the file, and at 16 zero octets where a key should be. A fill
/// item that runs past the end of the file counts as its end. Every other KLV becomes a set or a dark set, whatever its
/// key. A further primer pack adds its rows; a tag that an earlier one maps keeps its meaning.
///
/// A file that another program is writing is read as it is at one moment (`DataIO::File::readInOneState`).
///
/// Reads what it returns, keys and lengths, and goes past fill and essence without reading them, whatever the file's
/// size. Keeps no state between calls; two threads may read the same path at once.
/// @param path        the file; it is opened for reading and closed before the call returns.
/// @param dictionary  names sets and properties; the result keeps a reference to it.
/// @param choice      which partition; by default the header partition.
/// @param limits      sets, properties, value size and memory beyond which the file is refused.
/// @return the partition's sets, dark sets included, in file order; owned by the caller.
/// @throws Exceptions::ParseError with the byte offset where the file stops being MXF, or when the file has no such
/// partition or the partition no header metadata, and two that are one: DamagedMetadata where they begin and are not
/// whole, and LimitExceeded. Nothing is returned then. Exceptions::IOError when the file cannot be read.
std::unique_ptr<PartitionMetadata> readHeaderMetadata(const Path& path,
                                                      SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                                      const PartitionChoice& choice = PartitionChoice::header(),
                                                      const Limits& limits = {});
/// The same for a file in memory or anywhere else.
std::unique_ptr<PartitionMetadata> readHeaderMetadata(DataIO::SeekableSource& source,
                                                      SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                                      const PartitionChoice& choice = PartitionChoice::header(),
                                                      const Limits& limits = {});
/// The same for a partition that readStructure() or findPartition() has found in the file. Afterwards the source stands
/// where the metadata end, behind the fill that belongs to them.
std::unique_ptr<PartitionMetadata> readHeaderMetadata(DataIO::SeekableSource& source,
                                                      SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                                      const PartitionInfo& partition, const Limits& limits = {});

/// Reads the header metadata of the header partition from a source that only goes forward, such as a pipe or a
/// connection (DataIO::ForwardSource). The source stands at the start of the file, which may have a run-in. Nothing is
/// read behind the metadata but the 16 octets of the key that ends them.
/// @throws Exceptions::ParseError as above, also where the file ends within a set; and what the source throws.
std::unique_ptr<PartitionMetadata> readHeaderMetadata(DataIO::DataSource& source,
                                                      SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                                      const Limits& limits = {});

}  // namespace Vantor::MXF
