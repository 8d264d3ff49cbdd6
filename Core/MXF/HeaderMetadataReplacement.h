#pragma once

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "Core/DataIO/DataSink.h"
#include "Core/DataIO/File.h"
#include "Core/DataIO/UndoJournal.h"
#include "Core/MXF/PartitionPack.h"
#include "Core/Platform/Containers.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Types.h"
#include "Core/Types/UniversalLabel.h"

/// Replaces header metadata in the partitions of an existing MXF file, and the labels in its partition packs.
/// Everything else in the file stays as it is: essence, index tables, generic streams, dark KLVs outside of header
/// metadata, the statuses and versions of the partition packs. Repetitions are not replaced by themselves: a caller who
/// replaces the metadata of the header partition decides about those of the footer partition, too.
///
/// An object directory in header metadata (ObjectDirectory.h) follows: its entries, their number and its root are made
/// anew for the place where the metadata will stand, whatever the replacement has in it. Also where metadata that are
/// not replaced move.
///
/// Functions that take a path also take the state of the file from before the caller read its metadata, and refuse a
/// file in another state. All read the structure of the file anew and refuse what refuseUnsafe() of ReplacementSafety.h
/// refuses; rewrite(), where things move, also what refuseUnlisted() refuses. A change in place does not look for
/// partitions that the file does not list: that would take long in a large file, and they stay valid, but keep their
/// metadata. They throw Exceptions: ParseError with the offset when the file is damaged; InvalidFormat naming the
/// partition when a replacement is not what it should be, or is for a partition that the file does not have; IOError
/// naming the file when it must not be changed, cannot be, or was changed by another program since.
namespace Vantor::MXF {

/// New header metadata for one partition, which has some already.
struct MetadataReplacement {
  MetadataReplacement(std::size_t number, Bytes metadata)
      : partition(number), bytes(std::make_shared<const Bytes>(std::move(metadata))) {}
  /// For several partitions that get the same bytes.
  MetadataReplacement(std::size_t number, SharedPtr<const Bytes> metadata)
      : partition(number), bytes(std::move(metadata)) {}

  std::size_t partition;  ///< its number in file order; 0 is the header partition
  /// A primer pack, then sets, as writeHeaderMetadata() writes them; no fill behind them. Never null.
  SharedPtr<const Bytes> bytes;
};
using MetadataReplacements = std::vector<MetadataReplacement>;

/// Labels for partition packs, which repeat those of the Preface (ST 377-1). Only packs in which a label differs are
/// written; a list of essence containers differs by its labels, not by their order.
struct PackLabels {
  std::optional<Types::UniversalLabel> operationalPattern = {};  ///< none: each pack keeps its own
  /// None: each pack keeps its own. An empty list leaves packs without any.
  std::optional<std::vector<Types::UniversalLabel>> essenceContainers = {};
  std::optional<std::size_t> partition = {};  ///< the only one whose pack gets them, in file order; none: all

  bool isEmpty() const { return !operationalPattern && !essenceContainers; }
};

/// Gives a pack the labels, whatever its partition. @return whether one of them was another one.
bool relabel(PartitionPack& pack, const PackLabels& labels);

/// All that changes in a file.
struct Replacements {
  Replacements() = default;
  Replacements(std::initializer_list<MetadataReplacement> some) : metadata(some) {}
  Replacements(MetadataReplacements all, PackLabels packLabels = {})
      : metadata(std::move(all)), labels(std::move(packLabels)) {}
  Replacements(PackLabels packLabels) : labels(std::move(packLabels)) {}

  /// Whether nothing is asked for; labels that all packs have already count as asked for.
  bool isEmpty() const { return metadata.empty() && labels.isEmpty(); }

  MetadataReplacements metadata;
  PackLabels labels;
  /// Whether they are made although the file is cut off or not finished, as far as refuseUnsafe() can do without that:
  /// in place only, and also while the file becomes longer.
  bool isForced = false;
  /// Of a forced change: called before it is written. @throws what is to go on to the caller, with the file unchanged.
  std::function<void()> lastCheck = {};
};

/// The largest KAG size to which a partition is padded, in bytes; a larger one is taken for damage.
constexpr uint64 kMaxKAGSize = uint64{1} << 20;

/// Called with the bytes written so far and their total: after every hundredth, in large files after every 2 MiB, and a
/// last time with all of them, for a file directly before it is put in place. An exception from it cancels the work and
/// goes on to the caller.
using Progress = std::function<void(uint64 done, uint64 total)>;

/// Whether all of it can be written in place: every replacement fits into the room of the header metadata that it
/// replaces, every pack with other labels into its own, fill behind them included: exactly, or with at least the 17
/// bytes of a fill item to spare.
bool fits(DataIO::SeekableSource& file, const Replacements& replacements);

/// Writes the replacements, and fill behind them, into their places, and nothing else; takes no longer for a large
/// file. Of a pack, the numbers stay, right or wrong. If the process or machine stops, DataIO::File::recover() puts
/// back the old bytes from a journal beside the file; see Core/DataIO/UndoJournal.h.
/// @param oldBytes  kKeep, so that DataIO::File::undo() can undo the finished change.
/// @return as DataIO::File::changeInPlace().
/// @throws Exceptions::InvalidLength naming partition, size and room when one does not fit, IOError also for
/// what DataIO::File::changeInPlace() refuses. The file is as it was then.
DataIO::File::Durability replaceInPlace(const Path& file, const DataIO::File::FileState& expected,
                                        const Replacements& replacements,
                                        DataIO::File::OldBytes oldBytes = DataIO::File::OldBytes::kDrop);

/// Looks for all that replaceInPlace(), or rewrite() onto the file itself where the replacements do not fit, would
/// refuse, and writes nothing.
/// @throws Exceptions as these do, but for what only writing shows, such as a full disk.
void requireReplaceable(const Path& file, const DataIO::File::FileState& expected, const Replacements& replacements);

/// Writes a copy of the file with the replacements. The copying takes a few MiB of memory for files of any size.
///
/// Metadata and packs that fit keep their room. Where they do not, their partition becomes longer or shorter by a
/// multiple of its KAG size, so that what stood on that grid stands on it again. The partition packs and the random
/// index pack get the offsets and counts of the copy, also where those of the original were wrong; a footer partition
/// that they did not name stays unnamed. The run-in is kept.
///
/// Without replacements, the copy has the bytes of the original, MXF or not: nothing is refused.
/// @param output  gets the copy from its first byte on; after an exception, its content is no MXF file.
/// @throws Exceptions::IOError also when the original has another state at the end, or the journal of a stopped change;
/// InvalidLength when a pack gets more essence containers than kMaxPartitionPackSize has room for, or the KAG size of a
/// partition that has to grow is over kMaxKAGSize; also what the output throws.
void rewrite(const Path& original, const DataIO::File::FileState& expected, const Replacements& replacements,
             DataIO::DataSink& output, const Progress& progress = {});

/// The same for a file in memory or anywhere else, which must not change meanwhile.
void rewrite(DataIO::SeekableSource& original, const Replacements& replacements, DataIO::DataSink& output,
             const Progress& progress = {});

/// The same into a file, which appears whole or not at all and has then reached the medium; see
/// DataIO::File::AtomicFile for what it keeps of an existing file. It may be the original, under any of its names,
/// unless that has several hard links or is read-only. The target is refused, too, when it has the journal of a stopped
/// change. The original's state is checked a last time directly before the copy is put in place.
/// @return whether the name of the new file has reached the medium, too.
DataIO::File::Durability rewrite(const Path& original, const DataIO::File::FileState& expected,
                                 const Replacements& replacements, const Path& target, const Progress& progress = {});

}  // namespace Vantor::MXF
