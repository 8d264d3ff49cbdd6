#include "Terminal/Terminal.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

#include "Core/Platform/System.h"

namespace Vantor::Tool {

bool isTerminal(std::FILE* stream) { return Platform::System::isTerminal(stream); }

std::string environment(const char* name) { return Platform::System::environmentVariable(name); }

std::size_t terminalColumns() {
  constexpr std::size_t kLeast = 40, kMost = 1000, kUsual = 80;
  std::size_t columns = static_cast<std::size_t>(std::strtoul(environment("COLUMNS").c_str(), nullptr, 10));
  if (columns == 0) columns = Platform::System::terminalColumns();
  return columns == 0 ? kUsual : std::clamp(columns, kLeast, kMost);
}

bool takesUTF8() {
  for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    auto locale = environment(name);
    if (locale.empty()) continue;
    std::transform(locale.begin(), locale.end(), locale.begin(), [](unsigned char c) { return std::tolower(c); });
    return locale.find("utf-8") != std::string::npos || locale.find("utf8") != std::string::npos;
  }
  return false;
}

bool wantsColor(ColorChoice choice) {
  if (choice != ColorChoice::kAuto) return choice == ColorChoice::kAlways;
  return environment("NO_COLOR").empty() && environment("TERM") != "dumb" && isTerminal();
}

}  // namespace Vantor::Tool
