#pragma once

#include <string>
#include <vector>

#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor::Edit {

/// A value that needs BER-coded lengths in a set that has two-byte lengths so far. Many readers do not know these.
struct LongValue {
  std::string set;   ///< the symbol, with the InstanceUID when there is one
  std::size_t size;  ///< of the largest value of the set, in bytes: over 65,535
};

/// At most one for each set, in file order.
std::vector<LongValue> longValuesOf(const PartitionMetadata& metadata);

}  // namespace Vantor::Edit
