#include "Terminal/CopyProgress.h"

#include <csignal>
#include <cstdio>
#include <memory>
#include <string>
#include <utility>

#include "Core/Platform/System.h"
#include "Terminal/ErrorText.h"
#include "Terminal/Terminal.h"

namespace Vantor::Tool {

namespace {

volatile std::sig_atomic_t waiting = 0;  // the last signal that came, 0 if none did

extern "C" void keepWaiting(int signal) { waiting = signal; }

constexpr std::size_t kWidth = 50;  // characters

class Bar {
 public:
  Bar() = default;
  /// Ends the line of an unfinished bar, so that what is written next has its own.
  ~Bar() {
    if (percent_ >= 0) std::fputs("\n", stderr);
  }
  Bar(const Bar&) = delete;
  Bar& operator=(const Bar&) = delete;

  void show(uint64 done, uint64 total) {
    const int percent =
        done == total ? 100 : static_cast<int>(100.0 * static_cast<double>(done) / static_cast<double>(total));
    if (std::exchange(percent_, percent) != percent) draw();
  }

 private:
  void draw() const {
    const std::size_t full = kWidth * static_cast<std::size_t>(percent_) / 100;
    const std::string bar = std::string(full, '#') + std::string(kWidth - full, '.');
    std::fprintf(stderr, "\r[%s] %3d %%", bar.c_str(), percent_);
    std::fflush(stderr);
  }

  int percent_ = -1;  // none is shown
};

}  // namespace

CopyProgress::CopyProgress() : watched_{watch(SIGINT), watch(SIGTERM), watch(Platform::System::closingSignal())} {}

CopyProgress::~CopyProgress() {
  for (const auto& one : watched_) {
    if (one.before != SIG_ERR) std::signal(one.signal, one.before);
  }
  const int signal = waiting;
  waiting = 0;
  if (signal != 0 && !isStopped_) std::raise(signal);
}

CopyProgress::Watched CopyProgress::watch(int signal) {
  const Handler before = std::signal(signal, keepWaiting);
  if (before == SIG_IGN) std::signal(signal, SIG_IGN);
  return {signal, before};
}

bool CopyProgress::isInterrupted() const { return waiting != 0; }

MXF::Progress CopyProgress::progress() {
  return [this, bar = isTerminal(stderr) ? std::make_shared<Bar>() : nullptr](uint64 done, uint64 total) {
    isStopped_ = waiting != 0;
    if (isStopped_) throw CommandError("stopped; nothing is written");
    if (bar) bar->show(done, total);
  };
}

}  // namespace Vantor::Tool
