#pragma once

#include <string>
#include <vector>

#include "Core/Metadata/PartitionMetadata.h"
#include "Terminal/TreeText.h"
#include "Tree/SetNames.h"

/// The properties of sets as lines of trees.
namespace Vantor::Tool {

/// A set that a property owns: one item of a strong reference, or of a collection of these.
struct OwnedSet {
  const Element* element;
  std::size_t number;         ///< among the items, from 1; 0 where the property is no collection
  Types::UUID identifier;     ///< that the reference has
  const MetadataSet* target;  ///< null where no set has it
};

/// Those of a set, in order of interest.
std::vector<OwnedSet> ownedSets(const MetadataSet& set, const PartitionMetadata& metadata);

/// Whether a property is shown as sets below.
bool ownsSets(const Element& element);

class PropertyLines {
 public:
  /// @param names  outlives this. @param arrow  before the targets of references.
  PropertyLines(const PartitionMetadata& metadata, const SetNames& names, const char* arrow)
      : metadata_(metadata), names_(names), arrow_(arrow) {}

  using Pieces = std::vector<TreeLine::Piece>;

  /// The name and the value of a property that owns no sets.
  /// @param withIdentifiers  of the targets of references.
  Pieces valueOf(const MetadataSet& set, const Element& element, bool withIdentifiers) const;
  /// The property that owns a set, up to the colon: "PackageTracks[2] (Tracks): ".
  Pieces ownerOf(const MetadataSet& owner, const OwnedSet& owned) const;
  /// The name of a set, marked where it is dark.
  Pieces nameOf(const MetadataSet& set) const;
  /// "ApplicationName (ProductName)", or what stands for an unknown property.
  std::string propertyName(const MetadataSet& set, const Element& element) const;

 private:
  std::string targetsText(const Element& element, bool withIdentifiers) const;

  const PartitionMetadata& metadata_;
  const SetNames& names_;
  const char* arrow_;
};

}  // namespace Vantor::Tool
