#pragma once

namespace Vantor::Tool {

/// What the program tells its caller.
enum ExitCode : int {
  kSuccess = 0,
  kFailure = 1,    ///< something is wrong with an input or an output; one line on standard error tells what
  kWrongUsage = 2  ///< the command line cannot be understood
};

}  // namespace Vantor::Tool
