#pragma once

#include "Core/KLV/Key.h"
#include "XMLBuilder/ExportDocument.h"

namespace Vantor::XMLBuilder {

/// Writes a dark set or group as a "groups:DarkMetadata" element: key and count of length octets as attributes, the
/// value's octets as hexadecimal text.
void writeDarkMetadataSet(ExportDocument& document, xercesc::DOMElement& parent, const KLV::Key& key, uint8 berLength,
                          const uint8* octets, std::size_t count);

}  // namespace Vantor::XMLBuilder
