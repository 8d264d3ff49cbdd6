#pragma once

#include <xercesc/dom/DOMElement.hpp>

#include "XMLBuilder/ImportDocument.h"

/// How a lossless import treats the sets of which a document has nothing but octets.
namespace Vantor::XML2Partition::LosslessDarkSets {

bool isDarkSet(const xercesc::DOMElement& element);

/// Makes a set of an element's octets as a file reader does it, so that references find what has the form of a local
/// set. What is no dark set is reported.
void read(const xercesc::DOMElement& element, ImportDocument& document);

}  // namespace Vantor::XML2Partition::LosslessDarkSets
