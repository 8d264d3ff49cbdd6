#pragma once

#include "Core/Types/References.h"
#include "XMLBuilder/ExportDocument.h"
#include "XMLBuilder/Names.h"

/// The elements that stand for the target of a reference, with its InstanceUID in the attribute "types:TargetInstance".
namespace Vantor::XMLBuilder {

/// Appends a pointer to a set, named after it; "s377m:Dangling_REF" for a set without definition, which has no name.
/// @param targets  how many sets carry the InstanceUID.
void appendPointer(ExportDocument& document, xercesc::DOMElement& property, const Types::Reference& reference,
                   const MetadataSet& target, std::size_t targets);

/// Appends "s377m:Dangling_REF": no set carries the InstanceUID.
void appendDangling(ExportDocument& document, xercesc::DOMElement& property, const Types::Reference& reference);

}  // namespace Vantor::XMLBuilder
