#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <string_view>

#include "Core/Platform/Limits.h"

/// The limits of this run of the program, which serve every reader and writer of the command that runs.
namespace Vantor::Tool {

const Limits& limits();
/// The one of a name; null for none.
const LimitName* limitNamed(std::string_view name);
/// A value as --limit takes it, in the largest unit of which it is a whole number.
std::string limitText(uint64 value);

/// --limit NAME=VALUE, which sets one of them. A value may end in K, M, G or T, powers of 1024.
void addLimits(CLI::App& command);

}  // namespace Vantor::Tool
