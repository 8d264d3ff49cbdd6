#pragma once

#include <optional>
#include <string>

namespace Vantor::Tool {

/// Which property of which set a user means: "Set.Property", or "Set[2].Property" for the second of several sets.
struct PropertyChoice {
  std::string text;  ///< as the user wrote it
  std::string set;
  std::optional<std::size_t> number;  ///< from 1, in file order; none for the only set of that name
  std::string property;

  /// @throws UsageError naming the text when it has another shape.
  static PropertyChoice parse(const std::string& text);
};

/// What a user wants a property to be: "Set.Property=VALUE".
struct Assignment {
  PropertyChoice target;
  std::string value;  ///< UTF-8, perhaps empty

  /// @throws UsageError naming the text when it has another shape.
  static Assignment parse(const std::string& text);
};

}  // namespace Vantor::Tool
