#pragma once

#include "Core/Metadata/PartitionMetadata.h"
#include "XMLBuilder/ExportDocument.h"
#include "XMLBuilder/WrittenSets.h"

namespace Vantor::XMLBuilder {

/// What becomes of references, and of what the form of `partition2XML` hides.
struct WritingRules {
  bool nestStrongReferences;
  bool excludeNonStructural;
  /// Hides nothing: see `LosslessXML::exportDocument`.
  bool isLossless = false;
};

/// What the writers of one pass over a partition share.
struct ExportPass {
  PartitionMetadata& partition;
  WritingRules rules;
  ExportDocument& document;
  WrittenSets& written;
};

}  // namespace Vantor::XMLBuilder
