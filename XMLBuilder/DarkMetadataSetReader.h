#pragma once

#include "XMLBuilder/FromXMLMetadataSetVisitor.h"
#include "XMLBuilder/NodeText.h"

namespace Vantor::XML2Partition {

/// Reads the children of a "groups:FloatingDarkMetadata" element: those that the dictionary names become sets and are
/// listed, every other is read as a dark metadata set.
void readFloatingContainer(const xercesc::DOMElement& container, ReadingRules& rules, ImportedSets& imported);

/// Reads a dark metadata set into the partition by the exact rules.
/// @throws InvalidFormat for a malformed key, and naming the key for a value with an odd number of digits (which is
///         checked first) or with anything but hexadecimal digits.
void readDarkMetadataSet(const xercesc::DOMElement& element, BlankText blankText, PartitionMetadata& partition);

}  // namespace Vantor::XML2Partition
