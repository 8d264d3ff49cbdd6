#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "Core/DataIO/DataSink.h"
#include "Core/DataIO/SeekableSource.h"
#include "Core/MXF/FileStructure.h"
#include "Core/MXF/Fill.h"
#include "Core/MXF/HeaderMetadataReplacement.h"
#include "Core/MXF/MetadataRoom.h"
#include "Core/MXF/ObjectDirectory.h"
#include "Core/Platform/Types.h"

/// What HeaderMetadataReplacement.h will write, checked and measured, but not placed yet.
namespace Vantor::MXF {

/// A partition pack with other labels.
struct PlannedPack {
  /// The old pack, with the fill behind it where the new one has another size.
  MetadataRoom room;
  KLV::Key key;
  PartitionPack pack;      ///< the numbers are those of the old one
  uint8 lengthOctets = 0;  ///< of the length field

  /// In bytes, key and length field included.
  uint64 size() const;
  /// Without fill.
  void write(DataIO::DataSink& sink) const;
};

/// Header metadata that replace others, or move and have an object directory.
struct PlannedMetadata {
  MetadataRoom room;
  SharedPtr<const Bytes> bytes;             ///< never null
  std::optional<ListedMetadata> directory;  ///< takes the place of the bytes

  uint64 size() const { return directory ? directory->size() : bytes->size(); }
  /// @param offset  where the metadata will stand in the file.
  void write(uint64 offset, DataIO::DataSink& sink) const;
};

struct PlannedPartition {
  std::optional<PlannedPack> pack;
  std::optional<PlannedMetadata> metadata;
};

/// Whether new bytes, and a fill item or nothing behind them, take exactly the room of old ones.
template <class Planned>
bool fits(const Planned& planned) {
  return planned.size() <= planned.room.size && canFill(planned.room.size - planned.size());
}

struct ReplacementPlan {
  FileStructure structure;
  std::vector<std::optional<MetadataRoom>> rooms;  ///< of all partitions
  std::vector<PlannedPartition> partitions;        ///< all of them
};

/// Checks file and replacements.
/// @param replacements  outlive the plan.
/// @throws as HeaderMetadataReplacement.h has it for all its functions.
ReplacementPlan planReplacements(DataIO::SeekableSource& source, const Replacements& replacements);

/// Adds the metadata that are not replaced and have an object directory, for a file in which they may move.
void planMovedDirectories(DataIO::SeekableSource& source, ReplacementPlan& plan);

}  // namespace Vantor::MXF
