#include "ProgressBar.h"

#include <cstdio>
#include <string>
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

void show(uint64 done, uint64 total) {
  const double part = total == 0 ? 1 : static_cast<double>(done) / static_cast<double>(total);
  const auto full = static_cast<std::size_t>(part * kWidth);
  const std::string bar = std::string(full, '#') + std::string(kWidth - full, '.');
  std::fprintf(stderr, "\r[%s] %3d %%%s", bar.c_str(), static_cast<int>(part * 100), done == total ? "\n" : "");
  std::fflush(stderr);
}

}  // namespace

MXF::Progress progressBar() { return isTerminal() ? MXF::Progress(show) : MXF::Progress(); }

}  // namespace Vantor::Tool
