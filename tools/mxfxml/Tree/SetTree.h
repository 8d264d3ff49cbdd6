#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Core/Metadata/PartitionMetadata.h"
#include "Terminal/TreeText.h"

/// The sets of a partition as a tree along their strong references.
namespace Vantor::Tool {

struct TreeOptions {
  std::vector<const MetadataSet*> roots = {};  ///< only these and what is below; none for the whole partition
  std::optional<std::size_t> depth = {};       ///< of the deepest sets to show, 0 for the roots
  std::size_t deepestBranch = 12;              ///< sets deeper than that stand apart, as "continued"
  bool showsReferences = false;                ///< InstanceUIDs, and the identifiers of all references
  const char* arrow = "→";
};

/// The lines of a partition: the Preface and what it owns, what no reference leads to, and dark sets. Each set stands
/// once; where another reference leads to it, a line points to it. Takes time in proportion to the partition; keeps its
/// own stack, since files may chain as many sets as they have bytes for.
std::vector<TreeLine> treeOf(const PartitionMetadata& metadata, const TreeOptions& options);

}  // namespace Vantor::Tool
