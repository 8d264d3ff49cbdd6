#pragma once

#include <vector>

#include "Core/Metadata/PartitionMetadata.h"
#include "Summary/Summary.h"

namespace Vantor::Summary {

/// The descriptive frameworks of a partition, in file order. Takes time in proportion to their sets.
std::vector<Framework> frameworksOf(const PartitionMetadata& metadata);

}  // namespace Vantor::Summary
