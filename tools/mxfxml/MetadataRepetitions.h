#pragma once

#include <cstddef>
#include <optional>

#include "Core/DataIO/File.h"
#include "Core/MXF/FileStructure.h"
#include "Core/MXF/MetadataRoom.h"
#include "Core/Platform/Path.h"

namespace Vantor::Tool {

/// Finds out which partitions have the same header metadata, octet for octet but for the fill behind them, without
/// reading them as sets. A recording may have thousands that repeat the same.
class MetadataRepetitions {
 public:
  /// @param structure  outlives this.
  MetadataRepetitions(const Path& file, const MXF::FileStructure& structure);

  enum class Like {
    kHeader,   ///< the header partition
    kEarlier,  ///< the last partition of which kNone was told
    kNone      ///< neither, or nobody can tell
  };
  /// What a partition's metadata are like. To be called in file order, of partitions behind the header partition.
  Like like(std::size_t partition);

 private:
  std::optional<MXF::MetadataRoom> roomOf(std::size_t partition);
  bool areSame(const std::optional<MXF::MetadataRoom>& left, const std::optional<MXF::MetadataRoom>& right);

  DataIO::File::FileDataSource source_;
  const MXF::FileStructure& structure_;
  std::optional<MXF::MetadataRoom> header_;
  std::optional<MXF::MetadataRoom> earlier_;
};

}  // namespace Vantor::Tool
