#pragma once

#include <string>
#include <vector>

#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor::Tool {

/// Why properties were read as octets.
enum class Unread : uint8 {
  kUnknown,    ///< the dictionary does not have them
  kUnreadable  ///< it has them, but not with such a value
};

inline constexpr const char* kUnreadableText = "values that cannot be read";

/// A line for each kind of property: how many sets of a kind have it, why it was not read, and its value in the first
/// of them. In file order; empty when there is none.
std::string listOfUnread(const PartitionMetadata& metadata, Unread why);
/// Set and property, each once, in file order.
std::vector<std::string> unreadNames(const PartitionMetadata& metadata, Unread why);

}  // namespace Vantor::Tool
