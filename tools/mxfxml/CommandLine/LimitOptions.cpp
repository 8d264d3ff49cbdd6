#include "CommandLine/LimitOptions.h"

#include <string>
#include <utility>
#include <vector>

#include "CommandLine/CompletionHints.h"
#include "Core/Platform/NearestName.h"

namespace Vantor::Tool {

namespace {

std::vector<std::string> names() {
  std::vector<std::string> all;
  for (const auto& limit : kLimitNames) all.emplace_back(limit.name);
  return all;
}

std::string whyNoLimit(const std::string& text) {
  const auto [name, value] = limitSettingIn(text);
  if (limitNamed(name) == nullptr) {
    return "there is no limit '" + std::string(name) + "'" + Platform::suggestion(std::string(name), names());
  }
  return value ? "" : "'" + text + "' gives no number, as memory=4G does";
}

}  // namespace

void addLimits(CLI::App& command) {
  const auto take = [](const std::vector<std::string>& texts) {
    for (const auto& text : texts) setLimit(limitSettingIn(text));
  };
  std::vector<std::string> hints;
  for (const auto& name : names()) hints.push_back(name + "=");
  auto* option = command
                     .add_option_function<std::vector<std::string>>(
                         "--limit", take,
                         "Take on more or less before a file is refused: sets,\nproperties, nesting, value, names, "
                         "document, output,\nmemory=4G; may be given several times")
                     ->type_name("NAME=VALUE")
                     ->allow_extra_args(false)
                     ->check(whyNoLimit);
  hint(option, {CompletionHint::Kind::kNames, std::move(hints)});
}

}  // namespace Vantor::Tool
