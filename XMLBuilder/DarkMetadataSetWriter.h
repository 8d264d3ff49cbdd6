#pragma once

#include "Core/Metadata/DarkMetadataSet.h"
#include "Core/Metadata/MetadataSet.h"
#include "XMLBuilder/ExportDocument.h"

/// Writes sets of which only the bytes are known as "groups:DarkMetadata" elements: key and count of length octets as
/// attributes, the value's bytes as hexadecimal text.
namespace Vantor::XMLBuilder {

void writeDarkMetadataSet(ExportDocument& document, xercesc::DOMElement& parent, const DarkMetadataSet& set);

/// The same for a local set, which references can lead to.
void writeDarkMetadataSet(ExportDocument& document, xercesc::DOMElement& parent, const DarkParsedGroup& set);

}  // namespace Vantor::XMLBuilder
