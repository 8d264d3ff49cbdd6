#pragma once

#include "Core/Metadata/DarkMetadataSet.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "XMLBuilder/ExportDocument.h"

/// Writes sets that the dictionary does not know as "groups:DarkMetadata" elements: key and count of length octets as
/// attributes, the value's bytes as hexadecimal text.
namespace Vantor::XMLBuilder {

void writeDarkMetadataSet(ExportDocument& document, xercesc::DOMElement& parent, const DarkMetadataSet& set);

/// The same for a set of the model that has no definition. Properties without local tags are given some for the text,
/// but not in the partition.
void writeDarkMetadataSet(ExportDocument& document, xercesc::DOMElement& parent, const MetadataSet& set,
                          const PartitionMetadata& partition);

/// The same for one that keeps its bytes as they were read.
void writeDarkMetadataSet(ExportDocument& document, xercesc::DOMElement& parent, const DarkParsedGroup& set);

}  // namespace Vantor::XMLBuilder
