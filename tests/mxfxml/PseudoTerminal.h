#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "Program.h"

namespace Vantor::Tool {

/// A run of mxfxml or another program on a terminal of its own, which tests type on. One that nobody waited for is
/// killed.
class PseudoTerminal {
 public:
  /// @param variables  "NAME=value", in addition to those of this process.
  explicit PseudoTerminal(const std::vector<std::string>& arguments, const std::vector<std::string>& variables = {});
  /// @param program  its path.
  PseudoTerminal(const std::string& program, const std::vector<std::string>& arguments,
                 const std::vector<std::string>& variables);
  ~PseudoTerminal();
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;

  /// Waits until the terminal shows a text, behind what was waited for before, for a minute at most.
  /// @return whether it does; false also when the program ends without it.
  bool shows(const std::string& text);
  void type(const std::string& text) const;
  /// Waits for the end; kills a program that is silent for a minute. @return `out` has all that the terminal showed,
  /// with line feeds alone.
  Result finish();

 private:
  bool receive();

  int terminal_ = -1;
  pid_t process_ = -1;
  std::string shown_;
  std::size_t seen_ = 0;
  bool hasEnded_ = false;
};

}  // namespace Vantor::Tool
