#pragma once

#include <xercesc/dom/DOMElement.hpp>

#include "XMLBuilder/LosslessRules.h"

/// Dark sets in a lossless import.
namespace Vantor::XML2Partition::LosslessDarkSets {

/// Reserves the dynamic local tags used in the dark sets of a floating container, so that no property gets one. Only
/// the primer of the file has their meaning, and a document does not contain it.
void reserveTags(const xercesc::DOMElement& container, PartitionMetadata& partition);

/// Makes a set from an element's octets, as the reader of files does: a local set becomes a dark group, which
/// references find. Copies of a dark group become one set. An element that cannot be read is reported.
/// @throws Clash when another set of the document, or of the partition, has its InstanceUID.
void read(const xercesc::DOMElement& element, LosslessRules& rules);

}  // namespace Vantor::XML2Partition::LosslessDarkSets
