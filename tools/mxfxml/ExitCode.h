#pragma once

namespace Vantor::Tool {

/// The exit codes of the program.
enum ExitCode : int {
  kSuccess = 0,  ///< also when a file was changed and only the summary could not be written
  /// Something is wrong with an input or an output, or the user has interrupted the writing of a copy; the last line on
  /// standard error has the reason. At other moments a signal ends the program as usual.
  kFailure = 1,
  kWrongUsage = 2  ///< the command line cannot be understood
};

}  // namespace Vantor::Tool
