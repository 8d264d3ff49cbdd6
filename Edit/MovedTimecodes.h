#pragma once

#include <string>
#include <vector>

#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor::Edit {

/// A start timecode that an edit left alone, and that reads differently since the edit changed its base: the frames per
/// second or drop frame of its set.
struct MovedTimecode {
  std::string set;       ///< `MetadataSet::fullName`
  std::string property;  ///< the symbol
  std::string before;    ///< as it read, such as "10:00:00:00"; a number of frames where the base was none
  std::string after;
  std::string kept;  ///< the text of the old timecode in the new base; empty where that has no such timecode
};

/// In the order of the sets in `after`. Takes time in proportion to the sets.
std::vector<MovedTimecode> movedTimecodesOf(const PartitionMetadata& before, PartitionMetadata& after);

}  // namespace Vantor::Edit
