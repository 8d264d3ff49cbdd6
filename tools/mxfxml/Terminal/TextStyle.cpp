#include "Terminal/TextStyle.h"

namespace Vantor::Tool {

std::string styled(const std::string& text, Style style, bool hasColor) {
  if (!hasColor || text.empty() || style == Style::kPlain) return text;
  static constexpr const char* kCodes[] = {"", "1", "2", "36", "35", "32", "31", "36"};
  return std::string("\x1b[") + kCodes[static_cast<std::size_t>(style)] + "m" + text + "\x1b[0m";
}

}  // namespace Vantor::Tool
