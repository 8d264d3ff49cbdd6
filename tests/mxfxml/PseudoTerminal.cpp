#include "PseudoTerminal.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

namespace Vantor::Tool {

namespace {

constexpr int kLongest = 60000;  // ms

int openTerminal() {
  const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (terminal < 0 || ::grantpt(terminal) != 0 || ::unlockpt(terminal) != 0) throw std::runtime_error("posix_openpt");
  return terminal;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (auto& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

std::vector<std::string> environmentWith(const std::vector<std::string>& variables) {
  std::vector<std::string> all;
  for (char** variable = environ; *variable != nullptr; ++variable) all.emplace_back(*variable);
  // The first of a name counts.
  all.insert(all.begin(), variables.begin(), variables.end());
  return all;
}

}  // namespace

PseudoTerminal::PseudoTerminal(const std::vector<std::string>& arguments, const std::vector<std::string>& variables)
    : PseudoTerminal(programPath(), arguments, variables) {}

PseudoTerminal::PseudoTerminal(const std::string& program, const std::vector<std::string>& arguments,
                               const std::vector<std::string>& variables)
    : terminal_(openTerminal()) {
  std::vector<std::string> command = {program};
  command.insert(command.end(), arguments.begin(), arguments.end());
  auto environment = environmentWith(variables);
  const auto words = pointersTo(command), settings = pointersTo(environment);
  const std::string name = ::ptsname(terminal_);
  process_ = ::fork();
  if (process_ != 0) return;
  ::setsid();
  const int own = ::open(name.c_str(), O_RDWR);  // becomes the terminal of the new session
  ::ioctl(own, TIOCSCTTY, 0);
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::dup2(own, descriptor);
  ::execve(words[0], words.data(), settings.data());
  ::_exit(127);
}

PseudoTerminal::~PseudoTerminal() {
  if (process_ > 0) {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }
  ::close(terminal_);
}

bool PseudoTerminal::receive() {
  pollfd waiting{terminal_, POLLIN, 0};
  std::array<char, 4096> bytes{};
  if (::poll(&waiting, 1, kLongest) <= 0) return false;
  const ssize_t count = ::read(terminal_, bytes.data(), bytes.size());
  hasEnded_ = count <= 0;  // EIO: nobody has the other side any more
  if (hasEnded_) return false;
  shown_.append(bytes.data(), static_cast<std::size_t>(count));
  return true;
}

bool PseudoTerminal::shows(const std::string& text) {
  for (;;) {
    const auto at = shown_.find(text, seen_);
    if (at != std::string::npos) {
      seen_ = at + text.size();
      return true;
    }
    if (!receive()) return false;
  }
}

void PseudoTerminal::type(const std::string& text) const {
  if (::write(terminal_, text.data(), text.size()) < 0) throw std::runtime_error("write");
}

Result PseudoTerminal::finish() {
  while (receive()) {
  }
  if (!hasEnded_) ::kill(process_, SIGKILL);
  int status = 0;
  ::waitpid(process_, &status, 0);
  process_ = -1;
  std::string out = shown_;
  out.erase(std::remove(out.begin(), out.end(), '\r'), out.end());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), out, ""};
}

}  // namespace Vantor::Tool
