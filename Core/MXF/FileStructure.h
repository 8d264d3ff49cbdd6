#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "Core/DataIO/SeekableSource.h"
#include "Core/MXF/PartitionChoice.h"
#include "Core/MXF/PartitionPack.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Types.h"

namespace Vantor::MXF {

/// The longest run-in that may stand before the header partition pack, in bytes (ST 377-1).
constexpr uint64 kMaxRunIn = 65535;

/// One partition of a file. Offsets are from the start of the file, so with the run-in.
struct PartitionInfo {
  uint64 offset = 0;   ///< of the partition pack's key
  uint64 packEnd = 0;  ///< of the first byte behind the partition pack
  PartitionPack pack;
  /// Whether the pack's value cannot be read; then only kind and status, which are in the key, are known.
  bool damaged = false;
};
inline bool isFooter(const PartitionInfo& partition) { return partition.pack.kind == KLV::PartitionKind::kFooter; }

/// How the partitions were found. Each way is taken when the one before it does not lead to all partitions.
enum class StructureSource {
  kRandomIndexPack,     ///< it lists partition packs only, each of which names the one before it
  kPreviousPartitions,  ///< from the footer partition backwards, each pack names the one before it, down to the header
  kWalk                 ///< KLV by KLV through the file, up to the first that is not whole
};

struct FileStructure {
  uint64 fileSize = 0;  ///< in bytes
  uint64 runIn = 0;     ///< bytes before the header partition pack
  StructureSource source = StructureSource::kWalk;
  uint64 end = 0;  ///< up to where the file was searched for partitions; short of fileSize in a damaged file
  std::vector<PartitionInfo> partitions;  ///< in file order, the header partition first
};

/// Finds all partitions of a file. Reads partition packs, the random index pack and, on a walk, keys and lengths; never
/// essence, whatever the file's size. Keeps no state between calls; two threads may read the same path at once.
/// @throws Exceptions::ParseError when no header partition pack stands at the start or behind a run-in, or it is
/// damaged. Exceptions::IOError when the file cannot be read.
FileStructure readStructure(const Path& path);
FileStructure readStructure(DataIO::SeekableSource& source);

/// Goes past a run-in and reads the header partition pack; the source, which stands at the start of the file, then
/// stands behind the pack and has not been read any further.
/// @throws as readStructure().
PartitionInfo readHeaderPartition(DataIO::DataSource& source);

/// The number of the partition whose pack stands at an offset in the file; none when no partition starts there.
std::optional<std::size_t> partitionAt(const FileStructure& structure, uint64 offset);

/// How good the metadata of a partition can be, by the status of its pack: 4 for closed and complete, then closed and
/// incomplete, open and complete, open and incomplete; 0 for a generic stream partition, which has none (ST 377-1).
int rankOf(KLV::PartitionStatus status);
/// Whether a partition has header metadata, as its pack counts them.
inline bool hasMetadata(const PartitionInfo& partition) {
  return !partition.damaged && partition.pack.headerByteCount != 0;
}
/// The number of the partition with metadata and the highest rank, of equal ones the last, which is the footer
/// partition where that has metadata. None when no pack counts metadata.
std::optional<std::size_t> bestPartition(const FileStructure& structure);
/// A partition as a choice: the header or footer partition by name, any other by number.
PartitionChoice choiceOf(const FileStructure& structure, std::size_t number);

/// Finds one partition, with as little reading as that needs. The footer is where the header partition pack has it,
/// else where the random index pack has it, else at the end of a walk. The best one is that of bestPartition(), else
/// the header partition.
/// @throws Exceptions::ParseError "the file has no footer partition" and the like; also as readStructure().
PartitionInfo findPartition(DataIO::SeekableSource& source, const PartitionChoice& choice);

}  // namespace Vantor::MXF
