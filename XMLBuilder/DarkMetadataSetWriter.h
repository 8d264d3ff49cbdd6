#pragma once

#include "Core/Metadata/DarkMetadataSet.h"
#include "Core/Metadata/MetadataSet.h"
#include "XMLBuilder/ExportDocument.h"

/// Writes dark sets as "groups:DarkMetadata" elements: key and count of length octets as attributes, the value's octets
/// as hexadecimal text.
namespace Vantor::XMLBuilder {

void writeDarkMetadataSet(ExportDocument& document, xercesc::DOMElement& parent, const DarkMetadataSet& set);

/// The same for a dark group, to which references can lead.
void writeDarkMetadataSet(ExportDocument& document, xercesc::DOMElement& parent, const DarkParsedGroup& set);

}  // namespace Vantor::XMLBuilder
