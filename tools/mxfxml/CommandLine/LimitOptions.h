#pragma once

#include <CLI/CLI.hpp>

#include "Terminal/RunLimits.h"

namespace Vantor::Tool {

/// --limit NAME=VALUE, which sets one of the limits of this run.
void addLimits(CLI::App& command);

}  // namespace Vantor::Tool
