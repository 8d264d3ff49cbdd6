#pragma once

#include <string>
#include <vector>

#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor::Edit {

/// A value that is too long for the 2-byte lengths of its set. The set gets BER-coded lengths, which many readers do
/// not support.
struct LongValue {
  std::string set;   ///< the symbol, with the InstanceUID when there is one
  std::size_t size;  ///< of the largest value of the set, in octets: over 65,535
};

/// At most one for each set, in file order.
std::vector<LongValue> longValuesOf(const PartitionMetadata& metadata);

}  // namespace Vantor::Edit
