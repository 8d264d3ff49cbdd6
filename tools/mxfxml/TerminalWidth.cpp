#include "TerminalWidth.h"

#include <charconv>
#include <cstdlib>
#include <string_view>
#ifndef _WIN32
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace Vantor::Tool {

namespace {

constexpr std::size_t kUsualWidth = 80;

std::size_t widthInEnvironment() {
  const char* const columns = std::getenv("COLUMNS");
  const std::string_view text = columns == nullptr ? "" : columns;
  std::size_t width = 0;
  std::from_chars(text.data(), text.data() + text.size(), width);
  return width;
}

std::size_t widthOfTerminal() {
#ifndef _WIN32
  winsize size = {};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0) return size.ws_col;
#endif
  return 0;
}

}  // namespace

std::size_t terminalWidth() {
  const std::size_t asked = widthInEnvironment();
  if (asked != 0) return asked;
  const std::size_t shown = widthOfTerminal();
  return shown != 0 ? shown : kUsualWidth;
}

}  // namespace Vantor::Tool
