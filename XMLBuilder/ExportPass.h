#pragma once

#include <unordered_set>

#include "Core/Metadata/PartitionMetadata.h"
#include "XMLBuilder/ExportDocument.h"

namespace Vantor::XMLBuilder {

/// How references are written, and what is hidden.
struct WritingRules {
  bool nestStrongReferences;
  bool excludeNonStructural;
  /// Whether to hide nothing: see `LosslessXML::exportDocument`.
  bool isLossless = false;
};

/// The sets that one pass over a partition has written. Each is written once, which also ends circles of references.
using WrittenSets = std::unordered_set<const MetadataSet*>;

/// Shared by the writers of one pass over a partition.
struct ExportPass {
  PartitionMetadata& partition;
  WritingRules rules;
  ExportDocument& document;
  WrittenSets& written;
  unsigned depth = 0;  ///< nested references from the set that the pass starts with to the one that is being written
};

}  // namespace Vantor::XMLBuilder
