#pragma once

#include <string>

#include "Core/Comparison/PartitionComparison.h"

namespace Vantor::Tool {

/// A line for each difference, then the insignificant ones, then how much was compared and how much differs.
std::string describe(const PartitionComparison& comparison);

}  // namespace Vantor::Tool
