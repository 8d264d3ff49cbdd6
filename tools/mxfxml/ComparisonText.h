#pragma once

#include <string>

#include "Core/Comparison/PartitionComparison.h"

namespace Vantor::Tool {

/// Each difference on a line, then what is not counted as one, then how much was compared and how much differs.
std::string describe(const PartitionComparison& comparison);

}  // namespace Vantor::Tool
