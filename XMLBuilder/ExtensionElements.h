#pragma once

#include "Core/Metadata/Element.h"
#include "XMLBuilder/ExportPass.h"

/// The child "groups:ExtensionElements" of a set's element: properties that the set does not define, under their names,
/// and properties of which only the bytes are written, as "groups:DarkElement" with a mark of what they are.
namespace Vantor::XMLBuilder {

/// The container of a set's element; made for the first property, and moved to the last place for each.
xercesc::DOMElement& lastExtensionElements(ExportDocument& document, xercesc::DOMElement& set);

/// The namespace of "groups:DarkElement" and of its marks: the one that the document binds to "groups" first, or under
/// lossless rules "urn:SMPTE:Groups:MXF" in any case.
wstring groupsURI(const ExportPass& pass);

/// Marks a property that the dictionary does not know: "groups:StaticLocalTag" with a static tag, else
/// "groups:UniversalLabel" with the label that the primer has for the tag, else nothing.
void markUnknown(xercesc::DOMElement& property, const Element& element, const ExportPass& pass);

/// Marks a property that the dictionary knows: "groups:StaticLocalTag" for one of the set's own under its static tag,
/// else "groups:UniversalLabel" with the label of its definition.
void markKnown(xercesc::DOMElement& property, const Element& element, const ExportPass& pass);

}  // namespace Vantor::XMLBuilder
