#pragma once

#include <string>

#include "Core/Metadata/SetPath.h"

namespace Vantor::Tool {

/// What the user writes: "Set.Property=VALUE", or "Set.Property" where no value belongs.
/// @throws UsageError naming the text when it has another shape; InvalidFormat for a bracket that is not closed.
PropertyPath parsePropertyPath(const std::string& text, bool hasValue);

}  // namespace Vantor::Tool
