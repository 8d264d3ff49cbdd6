#include <fcntl.h>
#include <malloc.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/random.h>
#include <sys/select.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "Core/Platform/System.h"

namespace Vantor::Platform::System {

namespace {

// The system gives the lowest free number to the next file opened. Opening the null device for the other direction
// keeps the number of a closed stream from a file of ours, and makes writes to the stream fail.
void occupyIfClosed(int descriptor, int mode) {
  if (::fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) static_cast<void>(::open("/dev/null", mode));
}

/// Leaves the signals of the keyboard to another program.
class KeyboardSignals {
 public:
  KeyboardSignals() : interrupt_(std::signal(SIGINT, SIG_IGN)), quit_(std::signal(SIGQUIT, SIG_IGN)) {}
  ~KeyboardSignals() {
    std::signal(SIGINT, interrupt_);
    std::signal(SIGQUIT, quit_);
  }
  KeyboardSignals(const KeyboardSignals&) = delete;
  KeyboardSignals& operator=(const KeyboardSignals&) = delete;

 private:
  void (*interrupt_)(int);
  void (*quit_)(int);
};

/// How a new program starts: with the usual effect of all signals.
class SpawnAttributes {
 public:
  SpawnAttributes() {
    sigset_t all;
    ::sigfillset(&all);
    ::posix_spawnattr_init(&attributes_);
    ::posix_spawnattr_setsigdefault(&attributes_, &all);
    ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF);
  }
  ~SpawnAttributes() { ::posix_spawnattr_destroy(&attributes_); }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;
  const posix_spawnattr_t* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_;
};

int waitFor(pid_t process) {
  int status = 0;
  while (::waitpid(process, &status, 0) < 0) {
    if (errno != EINTR) return -1;
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace

std::size_t allocatedSize(void* memory) noexcept { return ::malloc_usable_size(memory); }

bool fillWithRandomOctets(uint8* octets, std::size_t size) { return ::getentropy(octets, size) == 0; }

std::vector<std::string> programArguments(int argc, char** argv) { return {argv + 1, argv + argc}; }

std::string environmentVariable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

void prepareStandardStreams() {
  occupyIfClosed(STDIN_FILENO, O_WRONLY);
  occupyIfClosed(STDOUT_FILENO, O_RDONLY);
  occupyIfClosed(STDERR_FILENO, O_RDONLY);
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

bool isTerminal(std::FILE* stream) { return ::isatty(::fileno(stream)) == 1; }

std::size_t terminalColumns() {
  winsize size{};
  return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

int closingSignal() { return SIGHUP; }

void waitForInput(const std::vector<int>& signals, const volatile std::sig_atomic_t& came) {
  sigset_t postponed, before;
  ::sigemptyset(&postponed);
  for (const int signal : signals) ::sigaddset(&postponed, signal);
  ::sigprocmask(SIG_BLOCK, &postponed, &before);
  fd_set input;
  FD_ZERO(&input);
  FD_SET(STDIN_FILENO, &input);
  if (came == 0) ::pselect(STDIN_FILENO + 1, &input, nullptr, nullptr, nullptr, &before);
  ::sigprocmask(SIG_SETMASK, &before, nullptr);
}

int readCharacter() {
  char character = 0;
  return ::read(STDIN_FILENO, &character, 1) == 1 ? static_cast<unsigned char>(character) : EOF;
}

int runCommand(const std::string& command, const std::vector<std::string>& arguments, int& exitCode) {
  std::vector<std::string> words = {"sh", "-c", command + " \"$@\"", command};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (auto& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  const KeyboardSignals ignored;
  const SpawnAttributes attributes;
  pid_t process = 0;
  const int error = ::posix_spawn(&process, "/bin/sh", nullptr, attributes.get(), pointers.data(), environ);
  if (error == 0) exitCode = waitFor(process);
  return error;
}

}  // namespace Vantor::Platform::System
