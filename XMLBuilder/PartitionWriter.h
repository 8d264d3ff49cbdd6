#pragma once

#include <xercesc/dom/DOMDocument.hpp>

#include "Core/Platform/Limits.h"
#include "XMLBuilder/ExportPass.h"
#include "XMLUtils/Holder.h"

namespace Vantor::XMLBuilder {

/// Builds the document of a partition. Calls wait for each other: there is one lock for the process.
/// @param partition    may be null.
/// @param start        the set to start from; may be null.
/// @param limits       memory beyond which the document is refused.
/// @param description  data of the document's description (`renderDescription`); empty for a document without one.
/// @return empty when there is no partition or no set to start from.
/// @throws as `partition2XML`.
XMLUtils::Holder<xercesc::DOMDocument> writePartition(PartitionMetadata* partition, const MetadataSet* start,
                                                      WritingRules rules, const Limits& limits,
                                                      const wstring& description = {});

}  // namespace Vantor::XMLBuilder
