#pragma once

#include <optional>

#include "Core/DataIO/SeekableSource.h"
#include "Core/MXF/FileStructure.h"
#include "Core/MXF/PartitionChoice.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Limits.h"
#include "Edit/Save.h"

namespace Vantor::Edit {

/// A file and the edited metadata of one of its partitions.
struct EditedFile {
  DataIO::SeekableSource& source;
  const SharedPtr<const MetaMetadata::Dictionary>& dictionary;
  const std::optional<MXF::PartitionChoice>&
      choice;                           ///< none for the header partition and all that repeat its metadata
  const MXF::PartitionInfo& partition;  ///< the one whose metadata are edited
  uint64 end;                           ///< of the metadata in the file
  PartitionMetadata& metadata;
  const Limits& limits;
};

/// What saving will write.
struct SavePlan {
  SaveReport report = {};
  MXF::Replacements replacements = {};
};

/// Completes and signs the edit of the metadata, and plans what saving writes.
/// @param signedBy  the Identification of an earlier plan of the same edit, or none; gets that of this one.
/// @throws Exceptions::IOError when the partition is not among those that the file lists, and cannot be replaced then.
SavePlan planSave(const EditedFile& file, const SaveOptions& options, std::optional<Types::UUID>& signedBy);

/// The place of a partition among those that a file lists. @throws Exceptions::IOError when it is none of them.
std::size_t numberOf(const MXF::PartitionInfo& partition, const MXF::FileStructure& structure);

/// Properties of the metadata get none of the local tags that its dark sets use.
void reserveDarkTags(PartitionMetadata& metadata);

}  // namespace Vantor::Edit
