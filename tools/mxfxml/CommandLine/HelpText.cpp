#include "CommandLine/HelpText.h"

#include <algorithm>
#include <set>
#include <vector>

namespace Vantor::Tool {

namespace {

constexpr std::size_t kDescriptionWidth = 66;

/// By name, since the set has them by address.
std::vector<std::string> namesIn(const std::set<CLI::Option*>& options) {
  std::vector<std::string> names;
  for (const CLI::Option* option : options) names.push_back(option->get_name());
  std::sort(names.begin(), names.end());
  return names;
}

/// A line of its own, or several, such as "Not with --json, --names"; empty without options.
std::string relationOf(const std::string& start, const std::set<CLI::Option*>& options) {
  std::string text, line = start;
  for (const auto& name : namesIn(options)) {
    const auto next = (line == start ? " " : ", ") + name;
    if (line.size() + next.size() < kDescriptionWidth) {
      line += next;
    } else {
      text += "\n" + line + ",";
      line = name;
    }
  }
  return options.empty() ? "" : text + "\n" + line;
}

}  // namespace

std::string HelpText::make_option_opts(const CLI::Option* option) const {
  const auto text = CLI::Formatter::make_option_opts(option);
  const auto needs = text.find(" " + get_label("Needs") + ":"), excludes = text.find(" " + get_label("Excludes") + ":");
  return text.substr(0, std::min(needs, excludes));
}

std::string HelpText::make_option_desc(const CLI::Option* option) const {
  return CLI::Formatter::make_option_desc(option) + relationOf("Only with", option->get_needs()) +
         relationOf("Not with", option->get_excludes());
}

std::string withArgumentNames(std::string text) {
  const std::string name = kAssignmentArgument, shown = "Set.Property=VALUE";
  for (auto at = text.find(name); at != std::string::npos; at = text.find(name, at + shown.size())) {
    text.replace(at, name.size(), shown);
  }
  return text;
}

}  // namespace Vantor::Tool
