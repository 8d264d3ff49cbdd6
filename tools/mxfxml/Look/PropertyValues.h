#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Metadata/PropertyLine.h"
#include "Core/Metadata/SetPath.h"
#include "JSON/Value.h"

/// The values that paths of the command line choose.
namespace Vantor::Tool {

/// What chooses one set, here and in other files: "Preface", "TimelineTrack[2]". Labels of sound have their place in
/// the layout, "AudioChannelLabelSubDescriptor[MCATagSymbol=chC]", since other files may have them in another order.
/// For one thread.
class ExactPaths {
 public:
  /// @param metadata  outlives this.
  explicit ExactPaths(const PartitionMetadata& metadata) : metadata_(metadata) {}

  /// The InstanceUID where the name of its kind does not lead to the set; the name where it has none.
  std::string pathOf(const MetadataSet& set) const;

 private:
  using Paths = std::unordered_map<const MetadataSet*, std::string>;
  const Paths& pathsOf(const MetaMetadata::MetaMetadataSet& kind) const;

  const PartitionMetadata& metadata_;
  mutable std::unordered_map<const MetaMetadata::MetaMetadataSet*, Paths> paths_;  // of kinds that were asked for
};

struct PropertyValue {
  const MetadataSet* set;
  HeldProperty property;
  std::string text;  ///< as `set` takes it, on one line
};

/// What a path means in a partition.
struct PropertyValues {
  std::vector<PropertyValue> values;
  bool isOne = false;   ///< the path does not end in "[*]": all values are equal
  std::string whyNone;  ///< a message where there are no values
};

/// Sets without the property do not count.
/// @throws InvalidFormat for names that the dictionary lacks, and for several sets with different values, unless the
/// path is for all.
PropertyValues valuesOf(const PartitionMetadata& metadata, const PropertyPath& path);

/// {"path", "set", "instanceUID", "property", "value", "text"}
JSON::Value jsonOf(const PropertyValue& value, const ExactPaths& paths);

}  // namespace Vantor::Tool
