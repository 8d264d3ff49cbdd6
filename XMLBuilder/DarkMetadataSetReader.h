#pragma once

#include "XMLBuilder/ImportDocument.h"

namespace Vantor::XML2Partition {

/// Reads the children of a "groups:FloatingDarkMetadata" element: those that the dictionary names become sets and are
/// listed, every other becomes a dark metadata set of the partition.
/// @throws InvalidFormat for a key that is none, and naming the key for a value of an odd number of digits (which is
///         looked at first) or of anything but hexadecimal digits.
void readFloatingContainer(const xercesc::DOMElement& container, ImportDocument& document, ImportedSets& imported);

}  // namespace Vantor::XML2Partition
