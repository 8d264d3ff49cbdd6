#pragma once

#include "Core/Types/References.h"
#include "XMLBuilder/ExportDocument.h"
#include "XMLBuilder/Names.h"

/// The elements that stand for the target of a reference, with its InstanceUID in the attribute "types:TargetInstance".
namespace Vantor::XMLBuilder {

/// Appends an element that points at a set. @param name  the element's qualified name and namespace.
void appendPointer(ExportDocument& document, xercesc::DOMElement& property, const QualifiedName& name,
                   const Types::Reference& reference);

/// Appends "s377m:Dangling_REF": no set, or none with a name, carries the InstanceUID.
void appendDangling(ExportDocument& document, xercesc::DOMElement& property, const Types::Reference& reference);

}  // namespace Vantor::XMLBuilder
