#pragma once

namespace Vantor::Tool {

/// What the program tells its caller.
enum ExitCode : int {
  kSuccess = 0,  ///< also when a file is changed, and only the line that tells so could not be written
  /// Something is wrong with an input or an output, or the user has stopped the writing of a copy; the last line on
  /// standard error tells what. A signal in other moments ends the program as the system does it.
  kFailure = 1,
  kWrongUsage = 2  ///< the command line cannot be understood
};

}  // namespace Vantor::Tool
