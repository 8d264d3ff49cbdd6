#include "CommandLine/LimitOptions.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <iterator>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "CommandLine/CompletionHints.h"
#include "Core/Platform/NearestName.h"

namespace Vantor::Tool {

namespace {

Limits chosen;

constexpr std::string_view kUnits = "KMGT";

std::vector<std::string> names() {
  std::vector<std::string> all;
  for (const auto& limit : kLimitNames) all.emplace_back(limit.name);
  return all;
}

std::optional<uint64> valueFrom(std::string_view text) {
  const auto unit = text.empty()
                        ? kUnits.npos
                        : kUnits.find(static_cast<char>(std::toupper(static_cast<unsigned char>(text.back()))));
  const unsigned shift = unit == kUnits.npos ? 0 : 10 * (static_cast<unsigned>(unit) + 1);
  if (shift != 0) text.remove_suffix(1);
  uint64 number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (number > std::numeric_limits<uint64>::max() >> shift) return std::nullopt;
  return number << shift;
}

struct Setting {
  std::string_view name;
  std::optional<uint64> value;
};

Setting settingIn(std::string_view text) {
  const auto equals = text.find('=');
  return {text.substr(0, equals), equals == text.npos ? std::nullopt : valueFrom(text.substr(equals + 1))};
}

std::string whyNoLimit(const std::string& text) {
  const auto [name, value] = settingIn(text);
  if (limitNamed(name) == nullptr) {
    return "there is no limit '" + std::string(name) + "'" + Platform::suggestion(std::string(name), names());
  }
  return value ? "" : "'" + text + "' gives no number, as memory=4G does";
}

}  // namespace

const Limits& limits() { return chosen; }

const LimitName* limitNamed(std::string_view name) {
  const auto* found = std::find_if(std::begin(kLimitNames), std::end(kLimitNames),
                                   [name](const LimitName& each) { return each.name == name; });
  return found == std::end(kLimitNames) ? nullptr : found;
}

std::string limitText(uint64 value) {
  std::string unit;
  for (const char next : kUnits) {
    if (value == 0 || value % 1024 != 0) break;
    value /= 1024;
    unit = next;
  }
  return std::to_string(value) + unit;
}

void addLimits(CLI::App& command) {
  const auto take = [](const std::vector<std::string>& texts) {
    for (const auto& text : texts) {
      const auto [name, value] = settingIn(text);
      chosen.*limitNamed(name)->member = value.value();
    }
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
