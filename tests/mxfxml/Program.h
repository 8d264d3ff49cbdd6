#pragma once

#include <sys/types.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Vantor::Tool {

class ScratchFolder;

/// What one run of the program left.
struct Result {
  int exitCode;     ///< or the negative number of the signal that ended it
  std::string out;  ///< empty when standard output went elsewhere
  std::string err;
};

/// Where standard output leads.
enum class Out { kCaptured, kFullDevice, kPipeWithoutReader, kClosed };
enum class Err { kCaptured, kClosed };

/// Runs mxfxml, or what the environment has as VANTOR_TESTED_MXFXML, with the arguments and waits for its end.
Result run(const std::vector<std::string>& arguments, Out out = Out::kCaptured, Err err = Err::kCaptured);

/// The same by a shell that sets a limit first, such as "ulimit -f 1".
Result runLimited(const std::string& limit, const std::vector<std::string>& arguments);

/// Runs a script of the shell, in which "$0" is mxfxml, and "$1" the first argument.
Result runScript(const std::string& script, const std::vector<std::string>& arguments = {});

/// A run of mxfxml that is interfered with. One that nobody waited for is killed.
class StartedProgram {
 public:
  /// @param err  a descriptor, where standard error leads, and results have none of it then; -1: it is captured.
  explicit StartedProgram(const std::vector<std::string>& arguments, int err = -1);
  ~StartedProgram();
  StartedProgram(const StartedProgram&) = delete;
  StartedProgram& operator=(const StartedProgram&) = delete;

  /// Returns as soon as the condition holds, or the program has ended.
  void waitUntil(const std::function<bool()>& condition) const;
  /// Kills it, as far as it has not ended, and waits for its end.
  void kill();
  /// Holds it until it is resumed.
  void stop() const;
  void send(int signal) const;
  /// Lets it go on, and waits for its end.
  Result resume();

 private:
  bool hasEnded() const;

  std::unique_ptr<ScratchFolder> streams_;
  pid_t process_;
  bool isWaitedFor_ = false;
};

/// The path of a file of tests/data.
std::string sample(const std::string& name);

}  // namespace Vantor::Tool
