#pragma once

#ifdef __linux__

#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

/// Runs work in a child process and stops it there: killed, or with no more room for files.
namespace Vantor {

enum class Ending { kKilled, kFinished, kFailed, kNotTraceable };

namespace Detail {

[[noreturn]] inline void runAsChild(const std::function<void()>& work) {
  try {
    work();
  } catch (...) {
    ::_exit(1);
  }
  ::_exit(0);
}

inline Ending endingOf(int status) {
  if (WIFSIGNALED(status)) return Ending::kKilled;
  return WEXITSTATUS(status) == 0 ? Ending::kFinished : Ending::kFailed;
}

}  // namespace Detail

/// Kills the work when it enters or leaves a system call and that is due; it may finish before. Nothing of it is
/// written then but what it had written before this call.
/// @param isDue  asked at each of them, while the work is held.
inline Ending runUntilSystemCall(const std::function<bool()>& isDue, const std::function<void()>& work) {
  const pid_t child = ::fork();
  if (child == 0) {
    if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) ::_exit(2);
    ::raise(SIGSTOP);
    Detail::runAsChild(work);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  if (WIFEXITED(status)) return Ending::kNotTraceable;
  ::ptrace(PTRACE_SETOPTIONS, child, nullptr, static_cast<long>(PTRACE_O_EXITKILL));
  do {
    ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    ::waitpid(child, &status, 0);
    if (!WIFSTOPPED(status)) return Detail::endingOf(status);
  } while (!isDue());
  ::kill(child, SIGKILL);
  ::waitpid(child, &status, 0);
  return Ending::kKilled;
}

/// The same for the n-th time.
inline Ending runUntilSystemCall(int n, const std::function<void()>& work) {
  return runUntilSystemCall([n]() mutable { return --n <= 0; }, work);
}

/// Lets the work write no file beyond so many bytes, as on a disk that is full.
inline Ending runWithFileSizeLimit(uint64_t limit, const std::function<void()>& work) {
  const pid_t child = ::fork();
  if (child == 0) {
    const struct rlimit sizes = {limit, limit};
    ::setrlimit(RLIMIT_FSIZE, &sizes);
    std::signal(SIGXFSZ, SIG_IGN);
    Detail::runAsChild(work);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return Detail::endingOf(status);
}

}  // namespace Vantor

#endif
