#pragma once

#include <xercesc/dom/DOMElement.hpp>

#include "XMLBuilder/ImportDocument.h"

/// How a lossless import treats the sets of which a document has nothing but octets.
namespace Vantor::XML2Partition::LosslessDarkSets {

bool isDarkSet(const xercesc::DOMElement& element);

/// Keeps the dynamic local tags within the dark sets of a floating container from being given to properties. What they
/// mean stood in the primer of the file; the document has it not.
void reserveTags(const xercesc::DOMElement& container, ImportDocument& document);

/// Makes a set of an element's octets as a file reader does it, so that references find what has the form of a local
/// set; one with an InstanceUID that the document has twice is one set. What is no dark set is reported.
/// @throws LosslessSets::Clash when another set of the document, or of the partition, has its InstanceUID.
void read(const xercesc::DOMElement& element, ImportDocument& document);

}  // namespace Vantor::XML2Partition::LosslessDarkSets
