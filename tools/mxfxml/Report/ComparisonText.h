#pragma once

#include <string>

#include "Core/Comparison/PartitionComparison.h"

namespace Vantor::Tool {

/// A line for each difference.
std::string differenceLines(const PartitionComparison& comparison);

/// The number of insignificant ones, then how much was compared and how much differs. Counts of zero are left out, but
/// for what was compared.
std::string countLines(const PartitionComparison& comparison);

/// Both.
std::string describe(const PartitionComparison& comparison);

}  // namespace Vantor::Tool
