#pragma once

#include <cstddef>
#include <optional>

#include "Core/DataIO/SeekableSource.h"
#include "Core/MXF/FileStructure.h"
#include "Core/MXF/MetadataRoom.h"

namespace Vantor::Edit {

/// Finds repetitions of header metadata: the same bytes, except for the fill behind them. Parses no sets, because a
/// recording may have thousands of repetitions.
class Repetitions {
 public:
  /// Both arguments outlive this.
  Repetitions(DataIO::SeekableSource& source, const MXF::FileStructure& structure);

  enum class Like {
    kHeader,   ///< the header partition
    kEarlier,  ///< the last partition for which the answer was kNone
    kNone      ///< neither; also where the metadata are damaged
  };
  /// To be called in file order, for partitions behind the header partition.
  Like like(std::size_t partition);

 private:
  std::optional<MXF::MetadataRoom> roomOf(std::size_t partition);
  bool areSame(const std::optional<MXF::MetadataRoom>& left, const std::optional<MXF::MetadataRoom>& right);

  DataIO::SeekableSource& source_;
  const MXF::FileStructure& structure_;
  std::optional<MXF::MetadataRoom> header_;
  std::optional<MXF::MetadataRoom> earlier_;
};

}  // namespace Vantor::Edit
