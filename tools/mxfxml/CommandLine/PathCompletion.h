#pragma once

#include <optional>
#include <string>
#include <vector>

#include "CommandLine/CompletionHints.h"
#include "Core/Platform/Path.h"

namespace Vantor::Tool {

/// Sets, properties and values that begin with a word, as `mxfxml set`, `get` and `dictionary` take them.
/// @param kind  what stands in the place: a path or the name of a definition.
/// @param file  whose sets are meant; without one that can be read, all sets of the dictionary are.
std::vector<std::string> pathCompletions(CompletionHint::Kind kind, const std::string& word,
                                         const std::optional<Path>& file);

}  // namespace Vantor::Tool
