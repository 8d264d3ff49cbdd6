#pragma once

#include <string>
#include <vector>

namespace Vantor::Tool {

/// What one run of the program left.
struct Result {
  int exitCode;     ///< or the negative number of the signal that ended it
  std::string out;  ///< empty when standard output went elsewhere
  std::string err;
};

/// Where standard output leads.
enum class Out { kCaptured, kFullDevice, kPipeWithoutReader, kClosed };
enum class Err { kCaptured, kClosed };

/// Runs mxfxml with the arguments and waits for its end.
Result run(const std::vector<std::string>& arguments, Out out = Out::kCaptured, Err err = Err::kCaptured);

/// The same by a shell that sets a limit first, such as "ulimit -f 1".
Result runLimited(const std::string& limit, const std::vector<std::string>& arguments);

/// The path of a file of tests/data.
std::string sample(const std::string& name);

}  // namespace Vantor::Tool
