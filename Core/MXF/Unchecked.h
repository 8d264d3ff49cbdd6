#pragma once

#include <cstddef>
#include <string>

#include "Core/Platform/Types.h"

namespace Vantor::MXF {

/// A reason not to replace header metadata in a file, which a change in place may disregard when the user wants that.
struct Unchecked {
  enum class Kind {
    kNoFooter,       ///< the header partition is open and there is no footer partition: its writer may be at work
    kMissingFooter,  ///< the footer partition that the header partition names is not there
    kEnd,            ///< the file cannot be followed to its end
    kPack,           ///< the pack of a partition cannot be read
    kMetadata,       ///< the metadata of a partition cannot be trusted with a change, and have to stay as they are
    kRandomIndex     ///< the random index pack cannot be read, or lists partitions that are not there
  };
  Kind kind = Kind::kEnd;
  uint64 offset = 0;          ///< where that is, or would be, in the file
  std::size_t partition = 0;  ///< of kPack and kMetadata
};

/// What is not checked, in English: "the file cannot be followed behind byte offset 5870".
std::string describe(const Unchecked& unchecked);

}  // namespace Vantor::MXF
