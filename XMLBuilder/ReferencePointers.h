#pragma once

#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Types/References.h"
#include "XMLBuilder/ExportDocument.h"

namespace Vantor::XMLBuilder {

/// Appends the element that stands for the target of a reference, with its InstanceUID in the attribute
/// "types:TargetInstance".
/// @param target   names the element; null, or a set without definition, gives "s377m:Dangling_REF".
/// @param targets  how many sets carry the InstanceUID; only a single one is referred to by its name.
void appendPointer(ExportDocument& document, xercesc::DOMElement& property, const Types::Reference& reference,
                   const MetadataSet* target = nullptr, std::size_t targets = 1);

}  // namespace Vantor::XMLBuilder
