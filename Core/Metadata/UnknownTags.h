#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "Core/MetaMetadata/MetaMetadataSet.h"
#include "Core/Metadata/PartitionDictionary.h"
#include "Core/Types/LocalTag.h"
#include "Core/Types/UniversalLabel.h"

/// How documents identify unknown properties, whose local tags mean something in their own file only.
namespace Vantor {

/// What identifies an unknown property outside its file. Both are empty for a dynamic tag without a label: its value
/// alone is kept then.
struct UnknownMark {
  std::optional<Types::LocalTag> tag = {};          ///< static
  std::optional<Types::UniversalLabel> label = {};  ///< empty where the static tag stands for it in every file
};

/// The mark of a property.
/// @param label  what the primer gives for the tag; null for nothing.
UnknownMark markOf(const Types::LocalTag& tag, const Types::UniversalLabel* label,
                   const MetaMetadata::Dictionary& dictionary);

/// Enters the labels of a document's unknown properties into the primer. Their order is that of tags and labels, so
/// that the numbers of dynamic tags do not depend on the order of sets in the document.
/// @param marks  in any order; those without label are ignored, and those for which no dynamic tag is free.
void enterLabels(std::vector<UnknownMark> marks, PartitionDictionary& tags);

/// The local tags that the unknown properties of one set get in a partition, by their marks.
class UnknownTags {
 public:
  /// @param set   the definition of the set.
  /// @param tags  of the partition; may get entries. Both outlive this.
  UnknownTags(const MetaMetadata::MetaMetadataSet& set, PartitionDictionary& tags) : set_(set), tags_(tags) {}

  /// The tag under which the property was read, or that its label has in the partition; for an empty mark, one that no
  /// other property has.
  /// @throws Exceptions::InvalidLength when no dynamic tag is free.
  Types::LocalTag tagFor(const UnknownMark& mark);

 private:
  const MetaMetadata::MetaMetadataSet& set_;
  PartitionDictionary& tags_;
  std::size_t unmarked_ = 0;
};

}  // namespace Vantor
