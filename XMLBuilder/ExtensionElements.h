#pragma once

#include "Core/Metadata/PartitionDictionary.h"
#include "XMLBuilder/ExportDocument.h"
#include "XMLBuilder/ToXMLMetaAttributeVisitor.h"

namespace Vantor::XMLBuilder {

/// Puts a property that does not belong to its set, or that no dictionary knows, into the "groups:ExtensionElements"
/// child of the set's element, which is made for the first such property and moved to the last place for each.
///
/// An unknown property is marked with what its tag means: "groups:StaticLocalTag" with a static tag, else
/// "groups:UniversalLabel" with the label that the primer gives for the tag, else nothing.
/// @param property  the property's element, in no parent yet.
/// @param value     null for none.
void writeExtensionElement(ExportDocument& document, xercesc::DOMElement& set, xercesc::DOMElement& property,
                           const ToXMLMetaAttributeVisitor& attribute, const Types::SimpleDataType* value,
                           const PartitionDictionary& tags);

}  // namespace Vantor::XMLBuilder
