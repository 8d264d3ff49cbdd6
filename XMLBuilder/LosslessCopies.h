#pragma once

#include <string>

#include "XMLBuilder/LosslessRules.h"

/// Sets that a document has more than once, as one that nests sets has those of several owners.
namespace Vantor::XML2Partition::LosslessCopies {

/// The set that was made already from another element of the same InstanceUID; null when this is the first.
///
/// Where this element differs from the first, that is reported, and the first counts; only the sets within it are read.
/// Takes time in proportion to this element, whatever the first one has.
/// @throws Clash when it is a set of another kind, and for the first when the partition had a set of the
/// InstanceUID before the import.
MetadataSet* read(const xercesc::DOMElement& element, const MetaMetadata::MetaMetadataSet& definition,
                  LosslessRules& rules);

/// @throws Clash naming both sets and their lines.
[[noreturn]] void refuse(const xercesc::DOMElement& element, const std::string& name,
                         const LosslessReport::Source& known, const LosslessReport& report);
/// @throws Clash naming both sets, one of which is in the partition and not of the document.
[[noreturn]] void refuse(const xercesc::DOMElement& element, const std::string& name, const MetadataSet& known,
                         const LosslessReport& report);

}  // namespace Vantor::XML2Partition::LosslessCopies
