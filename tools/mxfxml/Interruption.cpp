#include "Interruption.h"

#include <csignal>
#include <utility>

#include "ErrorText.h"

namespace Vantor::Tool {

namespace {

#ifdef _WIN32
constexpr int kClosed = SIGBREAK;
#else
constexpr int kClosed = SIGHUP;
#endif

volatile std::sig_atomic_t waiting = 0;  // the last signal that came, 0 if none did

extern "C" void keepWaiting(int signal) { waiting = signal; }

}  // namespace

Interruption::Interruption() : watched_{watch(SIGINT), watch(SIGTERM), watch(kClosed)} {}

Interruption::~Interruption() {
  for (const auto& one : watched_) {
    if (one.before != SIG_ERR) std::signal(one.signal, one.before);
  }
  const int signal = waiting;
  waiting = 0;
  if (signal != 0 && !isStopped_) std::raise(signal);
}

Interruption::Watched Interruption::watch(int signal) {
  const Handler before = std::signal(signal, keepWaiting);
  if (before == SIG_IGN) std::signal(signal, SIG_IGN);
  return {signal, before};
}

MXF::Progress Interruption::stopping(MXF::Progress progress) {
  return [this, progress = std::move(progress)](uint64 done, uint64 total) {
    isStopped_ = waiting != 0;
    if (isStopped_) throw CommandError("stopped; nothing is written");
    if (progress) progress(done, total);
  };
}

}  // namespace Vantor::Tool
