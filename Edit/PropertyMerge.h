#pragma once

#include <vector>

#include "Edit/Merge.h"

namespace Vantor::Edit {

/// A planned edit of one property of ours.
struct PropertyEdit {
  Element* place = nullptr;               ///< the property of ours; null for one to be added
  const Element* theirs = nullptr;        ///< null for one to be removed
  auto_ptr<Types::SimpleDataType> value;  ///< its new value; null for none
};

/// Plans and applies the edits of properties.
class PropertyMerge {
 public:
  /// All arguments outlive this.
  PropertyMerge(PartitionMetadata& ours, const PartitionMetadata& base, const Theirs& theirs, const Scope& scope,
                MergeReport& report);

  /// @param base, theirs  the set in these states.
  /// @throws Exceptions::InvalidFormat as `merge`.
  std::vector<PropertyEdit> plan(const MetadataSet& base, const MetadataSet& theirs, MetadataSet& ours);
  void apply(std::vector<PropertyEdit> edits, MetadataSet& ours);
  /// Adds all properties of a set of theirs to a new set of ours.
  void copyAll(const MetadataSet& theirs, MetadataSet& ours);

 private:
  bool mayChange(const PropertyPair& edit, const MetadataSet& set);
  bool planReferences(const PropertyPair& edit, Element& place, const MetadataSet& set,
                      std::vector<PropertyEdit>& edits);
  auto_ptr<Types::SimpleDataType> valueFor(const Element& place, const Element& theirs, const MetadataSet& set) const;
  Element& addProperty(const Element& theirs, MetadataSet& set);
  Types::LocalTag tagFor(const Element& theirs);

  PartitionMetadata& ours_;
  const PartitionDictionary& baseTags_;
  const Theirs& theirs_;
  const PartitionDictionary& theirTags_;
  const Scope& scope_;
  MergeReport& report_;
  std::size_t unlisted_ = 0;
};

}  // namespace Vantor::Edit
