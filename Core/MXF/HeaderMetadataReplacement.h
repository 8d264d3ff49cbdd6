#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "Core/DataIO/DataSink.h"
#include "Core/DataIO/File.h"
#include "Core/DataIO/UndoJournal.h"
#include "Core/Platform/Containers.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Types.h"

/// Replaces header metadata in the partitions of an existing MXF file. Everything else in the file stays as it is:
/// essence, index tables, generic streams, dark KLVs outside of header metadata, the statuses, labels and versions of
/// the partition packs. Repetitions are not replaced by themselves: a caller who replaces the metadata of the header
/// partition decides about those of the footer partition, too.
///
/// Functions that take a path also take the state of the file from before the caller read its metadata, and refuse a
/// file in another state. All read the structure of the file anew and refuse what refuseUnsafe() of ReplacementSafety.h
/// refuses; rewrite(), where things move, also what refuseUnlisted() refuses. A change in place does not look for
/// partitions that the file does not list: that would take long in a large file, and they stay valid, but keep their
/// metadata. They throw Exceptions: ParseError with the offset when the file is damaged; InvalidFormat naming the
/// partition when a replacement is not what it should be; IOError naming the file when it must not be changed, cannot
/// be, or was changed by another program since.
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

/// The largest KAG size to which a partition is padded, in bytes; a larger one is taken for damage.
constexpr uint64 kMaxKAGSize = uint64{1} << 20;

/// Called with the bytes written so far and their total: after every hundredth, in large files after every 2 MiB, and a
/// last time with all of them, for a file directly before it is put in place. An exception from it cancels the work and
/// goes on to the caller.
using Progress = std::function<void(uint64 done, uint64 total)>;

/// Whether every replacement fits into the room of the header metadata that it replaces, fill behind them included:
/// exactly, or with at least the 17 bytes of a fill item to spare.
bool fits(DataIO::SeekableSource& file, const MetadataReplacements& replacements);

/// Writes the replacements, and fill behind them, into their places, and nothing else; takes no longer for a large
/// file. If the process or machine stops, DataIO::File::recover() puts back the old bytes from a journal beside the
/// file; see Core/DataIO/UndoJournal.h.
/// @param oldBytes  kKeep, so that DataIO::File::undo() can undo the finished change.
/// @return as DataIO::File::changeInPlace().
/// @throws Exceptions::InvalidLength naming partition, size and room when a replacement does not fit, IOError also for
/// what DataIO::File::changeInPlace() refuses. The file is as it was then.
DataIO::File::Durability replaceInPlace(const Path& file, const DataIO::File::FileState& expected,
                                        const MetadataReplacements& replacements,
                                        DataIO::File::OldBytes oldBytes = DataIO::File::OldBytes::kDrop);

/// Writes a copy of the file with the replacements. The copying takes a few MiB of memory for files of any size.
///
/// Metadata that fit keep their room. Where they do not, their partition becomes longer or shorter by a multiple of its
/// KAG size, so that what stood on that grid stands on it again. The partition packs and the random index pack get the
/// offsets and counts of the copy, also where those of the original were wrong; a footer partition that they did not
/// name stays unnamed. The run-in is kept.
///
/// Without replacements, the copy has the bytes of the original, MXF or not: nothing is refused.
/// @param output  gets the copy from its first byte on; after an exception, its content is no MXF file.
/// @throws Exceptions::IOError also when the original has another state at the end, or the journal of a stopped change;
/// InvalidLength when the KAG size of a partition that has to grow is over kMaxKAGSize; also what the output throws.
void rewrite(const Path& original, const DataIO::File::FileState& expected, const MetadataReplacements& replacements,
             DataIO::DataSink& output, const Progress& progress = {});

/// The same for a file in memory or anywhere else, which must not change meanwhile.
void rewrite(DataIO::SeekableSource& original, const MetadataReplacements& replacements, DataIO::DataSink& output,
             const Progress& progress = {});

/// The same into a file, which appears whole or not at all and has then reached the medium; see
/// DataIO::File::AtomicFile for what it keeps of an existing file. It may be the original, under any of its names,
/// unless that has several hard links or is read-only. The target is refused, too, when it has the journal of a stopped
/// change. The original's state is checked a last time directly before the copy is put in place.
/// @return whether the name of the new file has reached the medium, too.
DataIO::File::Durability rewrite(const Path& original, const DataIO::File::FileState& expected,
                                 const MetadataReplacements& replacements, const Path& target,
                                 const Progress& progress = {});

}  // namespace Vantor::MXF
