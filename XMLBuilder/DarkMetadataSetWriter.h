#pragma once

#include "Core/Metadata/DarkMetadataSet.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "XMLBuilder/ExportDocument.h"

/// Writes sets that the dictionary does not know as "groups:DarkMetadata" elements: key and count of length octets as
/// attributes, the value's bytes as hexadecimal text.
namespace Vantor::XMLBuilder {

void writeDarkMetadataSet(ExportDocument& document, xercesc::DOMElement& parent, const DarkMetadataSet& set);

/// The same for a set of the model that has no definition. Its properties get their local tags from the partition.
void writeDarkMetadataSet(ExportDocument& document, xercesc::DOMElement& parent, const MetadataSet& set,
                          PartitionMetadata& partition);

}  // namespace Vantor::XMLBuilder
