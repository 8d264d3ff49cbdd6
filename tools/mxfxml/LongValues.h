#pragma once

#include <string>
#include <vector>

#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor::Tool {

/// A warning for each set that is to be written with BER-coded lengths although it was not read so: a value of it is
/// over 65,535 bytes.
std::vector<std::string> warningsOfLongValues(const PartitionMetadata& metadata);

}  // namespace Vantor::Tool
