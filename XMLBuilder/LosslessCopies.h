#pragma once

#include <string>

#include "XMLBuilder/LosslessRules.h"

/// Sets that occur more than once in a document, as those with several owners may in a nested one.
namespace Vantor::XML2Partition::LosslessCopies {

/// The set that was made from an earlier element with the same InstanceUID; null when this is the first.
///
/// The first element counts: a difference in this one is reported, and only the sets nested in it are read. Takes time
/// in proportion to this element, however large the first one is.
/// @throws Clash when the two are sets of different kinds, and for the first element when the partition had a set with
/// the InstanceUID before the import.
MetadataSet* read(const xercesc::DOMElement& element, const MetaMetadata::MetaMetadataSet& definition,
                  LosslessRules& rules);

/// @throws Clash naming both sets when one of the document, or of the partition before the import, has the InstanceUID.
/// @param own  a set that may have it.
void requireUnused(const Types::UUID& instanceUID, const xercesc::DOMElement& element, const std::string& name,
                   LosslessRules& rules, const MetadataSet* own = nullptr);

}  // namespace Vantor::XML2Partition::LosslessCopies
