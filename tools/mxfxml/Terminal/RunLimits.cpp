#include "Terminal/RunLimits.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <iterator>
#include <limits>
#include <system_error>

namespace Vantor::Tool {

namespace {

Limits chosen;

constexpr std::string_view kUnits = "KMGT";

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

}  // namespace

const Limits& limits() { return chosen; }

LimitSetting limitSettingIn(std::string_view text) {
  const auto equals = text.find('=');
  return {text.substr(0, equals), equals == text.npos ? std::nullopt : valueFrom(text.substr(equals + 1))};
}

void setLimit(const LimitSetting& setting) { chosen.*limitNamed(setting.name)->member = setting.value.value(); }

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

}  // namespace Vantor::Tool
