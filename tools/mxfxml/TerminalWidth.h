#pragma once

#include <cstddef>

namespace Vantor::Tool {

/// The columns of a line on standard output: those of the environment variable COLUMNS, or of the terminal; 80 where
/// there is neither.
std::size_t terminalWidth();

}  // namespace Vantor::Tool
