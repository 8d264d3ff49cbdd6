#pragma once

#include <array>
#include <string>

/// Questions to the user, on a terminal.
namespace Vantor::Tool {

/// Whether there is a terminal to answer on: standard input and standard error are.
bool canAsk();

/// Prints the question on standard error and waits for a line that begins with one of the answers, in either case; asks
/// again for any other. @param answers  a small letter each. @return the letter.
/// @throws CommandError when the user interrupts, and at the end of the input.
char ask(const std::string& question, const std::string& answers);

/// Postpones what ends the program from outside, so that nothing is left behind: an interrupt of the user, SIGTERM, a
/// terminal that is closed. Only one object may exist at a time.
class PostponedSignals {
 public:
  PostponedSignals();
  ~PostponedSignals();
  PostponedSignals(const PostponedSignals&) = delete;
  PostponedSignals& operator=(const PostponedSignals&) = delete;

  /// @throws CommandError when one came.
  static void throwIfAny();

 private:
  using Handler = void (*)(int);
  std::array<Handler, 3> before_;
};

}  // namespace Vantor::Tool
