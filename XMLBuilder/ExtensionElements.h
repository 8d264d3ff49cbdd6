#pragma once

#include "Core/Metadata/Element.h"
#include "XMLBuilder/ExportPass.h"

/// The child "groups:ExtensionElements" of a set's element: properties that the set does not define, under their names,
/// and properties that are written as octets, as "groups:DarkElement" with a mark of what they are.
namespace Vantor::XMLBuilder {

/// The container in a set's element; made for the first property, and moved behind its siblings for each.
xercesc::DOMElement& lastExtensionElements(ExportDocument& document, xercesc::DOMElement& set);

/// The namespace of "groups:DarkElement" and of its marks: "urn:SMPTE:Groups:MXF" under lossless rules; otherwise the
/// one that the document binds to "groups" first.
wstring groupsURI(const ExportPass& pass);

/// Marks an unknown property: "groups:StaticLocalTag" with a static tag, "groups:UniversalLabel" with the primer's
/// label of any other tag, if it has one. Under lossless rules, a static tag has its label, too, where the primer gives
/// it another one than the registers.
void markUnknown(xercesc::DOMElement& property, const Element& element, const ExportPass& pass);

/// Marks a known property: "groups:StaticLocalTag" if it is one of the set's own under its static tag, else
/// "groups:UniversalLabel" with the label of its definition.
void markKnown(xercesc::DOMElement& property, const Element& element, const ExportPass& pass);

}  // namespace Vantor::XMLBuilder
