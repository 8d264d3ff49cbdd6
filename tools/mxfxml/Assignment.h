#pragma once

#include <string>

namespace Vantor::Tool {

/// A property of a set: "Set.Property", "Set[2].Property", or an InstanceUID or key for the set.
struct PropertyChoice {
  std::string text;  ///< as the user wrote it
  std::string set;   ///< as `PartitionMetadata::find` takes it
  std::string property;

  /// @throws UsageError naming the text when it has another shape.
  static PropertyChoice parse(const std::string& text);
};

/// A value for a property: "Set.Property=VALUE".
struct Assignment {
  PropertyChoice target;
  std::string value;  ///< UTF-8, perhaps empty

  /// @throws UsageError naming the text when it has another shape.
  static Assignment parse(const std::string& text);
};

}  // namespace Vantor::Tool
