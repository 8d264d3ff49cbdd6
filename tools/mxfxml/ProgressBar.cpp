#include "ProgressBar.h"

#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace Vantor::Tool {

namespace {

constexpr std::size_t kWidth = 50;  // characters

bool isTerminal() {
#ifdef _WIN32
  return _isatty(_fileno(stderr)) != 0;
#else
  return isatty(STDERR_FILENO) != 0;
#endif
}

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

MXF::Progress progressBar() {
  if (!isTerminal()) return {};
  return [bar = std::make_shared<Bar>()](uint64 done, uint64 total) { bar->show(done, total); };
}

}  // namespace Vantor::Tool
