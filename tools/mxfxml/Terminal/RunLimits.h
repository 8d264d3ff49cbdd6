#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Core/Platform/Limits.h"

/// The limits of this run of the program, which serve every reader and writer of the command that runs.
namespace Vantor::Tool {

const Limits& limits();

/// What "memory=4G" sets.
struct LimitSetting {
  std::string_view name;
  std::optional<uint64> value;  ///< none for a text that gives no number. It may end in K, M, G or T, powers of 1024
};
LimitSetting limitSettingIn(std::string_view text);
/// @param setting  has the name of a limit, and a value.
void setLimit(const LimitSetting& setting);

/// The limit of a name; null for none.
const LimitName* limitNamed(std::string_view name);
/// A value as a setting has it, in the largest unit of which it is a whole number.
std::string limitText(uint64 value);

}  // namespace Vantor::Tool
