#pragma once

#ifdef __linux__

#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <optional>

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

/// Starts the work and holds it when it enters or leaves a system call for which `isDue` holds. `ending` is how the
/// work ended if it finished before.
/// @param isDue  asked at each of them, while the work is held.
inline pid_t startUntilSystemCall(const std::function<bool()>& isDue, const std::function<void()>& work,
                                  std::optional<Ending>& ending) {
  const pid_t child = ::fork();
  if (child == 0) {
    if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) ::_exit(2);
    ::raise(SIGSTOP);
    Detail::runAsChild(work);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  if (WIFEXITED(status)) ending = Ending::kNotTraceable;
  if (!ending) ::ptrace(PTRACE_SETOPTIONS, child, nullptr, static_cast<long>(PTRACE_O_EXITKILL));
  while (!ending) {
    ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    ::waitpid(child, &status, 0);
    if (!WIFSTOPPED(status)) {
      ending = endingOf(status);
    } else if (isDue()) {
      break;
    }
  }
  return child;
}

/// Due at the n-th time.
inline std::function<bool()> atCall(int n) {
  return [n]() mutable { return --n <= 0; };
}

}  // namespace Detail

/// Kills the work when it enters or leaves a system call for which `isDue` holds; it may finish before. Only what it
/// wrote before this call is written then.
/// @param isDue  asked at each of them, while the work is held.
inline Ending runUntilSystemCall(const std::function<bool()>& isDue, const std::function<void()>& work) {
  std::optional<Ending> ending;
  const pid_t child = Detail::startUntilSystemCall(isDue, work, ending);
  if (ending) return *ending;
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  return Ending::kKilled;
}

/// The same for the n-th time.
inline Ending runUntilSystemCall(int n, const std::function<void()>& work) {
  return runUntilSystemCall(Detail::atCall(n), work);
}

/// Holds the work when it enters or leaves a system call for the n-th time, and does something else meanwhile, unless
/// the work finishes before.
inline Ending runHeldAtSystemCall(int n, const std::function<void()>& work, const std::function<void()>& meanwhile) {
  std::optional<Ending> ending;
  const pid_t child = Detail::startUntilSystemCall(Detail::atCall(n), work, ending);
  if (ending) return *ending;
  meanwhile();
  ::ptrace(PTRACE_DETACH, child, nullptr, nullptr);
  int status = 0;
  ::waitpid(child, &status, 0);
  return Detail::endingOf(status);
}

/// Limits the size of files that the work writes, as a full disk does.
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
