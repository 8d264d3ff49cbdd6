#pragma once

#include "Core/Comparison/PropertyPairing.h"
#include "Edit/PartitionMerge.h"
#include "Edit/ReferenceMerge.h"

namespace Vantor {

/// The references of a property, which may be null: then there are none.
ReferenceTargets targetsOf(const Element* property);

/// Brings the edits of properties to the sets of a merged partition.
class PropertyMerge {
 public:
  /// @param originalTags  of the partition that is merged.
  /// @param result        outlives this, as the others do.
  PropertyMerge(const PartitionDictionary& originalTags, const DocumentContent& edited, const MergeRules& rules,
                PartitionMetadata& result);

  /// @param unedited       the document with the set before the edit.
  /// @param before, after  the set in the documents.
  /// @param merged         the set of the result, as it is in the original.
  /// @param summary        gets what stays because nothing may be removed.
  /// @return how many properties were changed.
  /// @throws UnclearEdit, Exceptions::InvalidFormat as `mergeEdits`.
  std::size_t merge(const DocumentContent& unedited, const MetadataSet& before, const MetadataSet& after,
                    MetadataSet& merged, MergeSummary& summary);

  /// Gives a set of the result all properties that one of the edited document has.
  void copyAll(const MetadataSet& after, MetadataSet& to);

 private:
  bool mayChange(const PropertyPair& edit, const DocumentContent& unedited, const MetadataSet& set,
                 MergeSummary& summary) const;
  bool apply(const PropertyPair& edit, Element* place, MetadataSet& set, MergeSummary& summary);
  bool isWholeEdit(const PropertyPair& edit, const Element& place) const;
  bool applyReferences(const PropertyPair& edit, Element& place, const MetadataSet& set, MergeSummary& summary) const;
  void refuseLostReferences(const MetadataSet& set, const DocumentContent& unedited, const MetadataSet& after) const;
  [[noreturn]] void refuse(const MetadataSet& set, const Element& property) const;
  Element& addProperty(const Element& property, MetadataSet& set);
  Types::LocalTag tagFor(const Element& property);

  const DocumentContent& edited_;
  const MergeRules& rules_;
  const PartitionDictionary& originalTags_;
  const PartitionDictionary& editedTags_;
  PartitionMetadata& result_;
  std::size_t unlisted_ = 0;
};

}  // namespace Vantor
