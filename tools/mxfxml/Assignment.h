#pragma once

#include <optional>
#include <string>

namespace Vantor::Tool {

/// What a user wants a property to be: "Set.Property=VALUE", or "Set[2].Property=VALUE" for the second of several sets.
struct Assignment {
  std::string set;
  std::optional<std::size_t> number;  ///< from 1, in file order; none for the only set of that name
  std::string property;
  std::string value;  ///< UTF-8, perhaps empty

  /// @throws CommandError naming the text when it has another shape.
  static Assignment parse(const std::string& text);
};

}  // namespace Vantor::Tool
