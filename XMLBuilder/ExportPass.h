#pragma once

#include "Core/Metadata/PartitionMetadata.h"
#include "XMLBuilder/ExportDocument.h"
#include "XMLBuilder/WrittenSets.h"

namespace Vantor::XMLBuilder {

/// How references are written, and what is hidden.
struct WritingRules {
  bool nestStrongReferences;
  bool excludeNonStructural;
  /// Whether to hide nothing: see `LosslessXML::exportDocument`.
  bool isLossless = false;
};

/// Shared by the writers of one pass over a partition.
struct ExportPass {
  PartitionMetadata& partition;
  WritingRules rules;
  ExportDocument& document;
  WrittenSets& written;
};

}  // namespace Vantor::XMLBuilder
