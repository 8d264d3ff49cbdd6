#pragma once

#include <xercesc/dom/DOMElement.hpp>

#include "XMLBuilder/LosslessRules.h"

/// How a lossless import treats the sets of which a document has nothing but octets.
namespace Vantor::XML2Partition::LosslessDarkSets {

/// Keeps the dynamic local tags within the dark sets of a floating container from being given to properties. Their
/// meaning stood in the primer of the file, which is not part of a document.
void reserveTags(const xercesc::DOMElement& container, PartitionMetadata& partition);

/// Makes a set of an element's octets as a file reader does it, so that references find what has the form of a local
/// set; one with an InstanceUID that the document has twice is one set. One that cannot be read is reported.
/// @throws Clash when another set of the document, or of the partition, has its InstanceUID.
void read(const xercesc::DOMElement& element, LosslessRules& rules);

}  // namespace Vantor::XML2Partition::LosslessDarkSets
