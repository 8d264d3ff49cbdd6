#pragma once

#include <memory>
#include <vector>

#include "Core/DataIO/DataSource.h"
#include "Core/DataIO/SeekableSource.h"
#include "Core/MXF/FileStructure.h"
#include "Core/MXF/MetadataDamage.h"
#include "Core/MXF/PartitionChoice.h"
#include "Core/MetaMetadata/Dictionary.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Limits.h"
#include "Core/Platform/Path.h"

namespace Vantor::MXF {

/// What can be read of header metadata, and what cannot.
struct SalvagedMetadata {
  /// The whole sets and dark sets, in file order; never null. None is there in part, and references may lead nowhere.
  std::unique_ptr<PartitionMetadata> metadata;
  /// In file order; empty for metadata without damage.
  std::vector<MetadataDamage> missing;
};

/// Reads the header metadata of one partition as `readHeaderMetadata` does, and goes on behind damage: the result is
/// the same for metadata without any.
///
/// A damaged KLV is left out as a whole: a wrong length makes all of its items doubtful. When what can follow in header
/// metadata stands where it ends, reading goes on there; else at the next key behind its first byte that can be one of
/// them: of a set that its items fill, an InstanceUID among them, of a primer pack, or of fill. Search and metadata
/// end at the key of a partition pack, an index table segment, the random index pack, essence or a system item, where
/// the partition pack's count of bytes ends, and at the end of the file. Behind the first damage, KLVs of other keys
/// are taken only where a known one follows them. Zeros in place of a key are damage when sets follow them within the
/// partition pack's count. Without a primer pack, or with a damaged one, static tags mean what they always mean;
/// properties with dynamic tags are unknown.
///
/// Takes time in proportion to the bytes of the metadata and those that are searched. No more than 64 MiB are searched
/// at a time, nor behind 1,000 damaged places; `MetadataDamage::Kind::kSearchEnded` is the last one then.
/// @param path        the file; it is opened for reading and closed before the call returns.
/// @param dictionary  names sets and properties; the result keeps a reference to it.
/// @param choice      which partition; by default the header partition.
/// @param limits      as for readHeaderMetadata(); but a KLV beyond `Limits::valueSize` counts as damaged.
/// @throws Exceptions::ParseError when the file has no such partition or the partition no header metadata, and
/// LimitExceeded. Exceptions::IOError when the file cannot be read.
SalvagedMetadata salvageHeaderMetadata(const Path& path, SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                       const PartitionChoice& choice = PartitionChoice::header(),
                                       const Limits& limits = {});
/// The same for a file in memory or anywhere else.
SalvagedMetadata salvageHeaderMetadata(DataIO::SeekableSource& source,
                                       SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                       const PartitionChoice& choice = PartitionChoice::header(),
                                       const Limits& limits = {});
/// The same for a partition that readStructure() or findPartition() has found in the file. Afterwards the source stands
/// where the metadata end.
SalvagedMetadata salvageHeaderMetadata(DataIO::SeekableSource& source,
                                       SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                       const PartitionInfo& partition, const Limits& limits = {});
/// The same for the header partition from a source that only goes forward and stands at the start of the file. Keeps
/// what it reads; behind damage, that may be more than the metadata.
SalvagedMetadata salvageHeaderMetadata(DataIO::DataSource& source, SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                       const Limits& limits = {});

}  // namespace Vantor::MXF
