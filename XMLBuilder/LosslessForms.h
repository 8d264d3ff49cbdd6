#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <xercesc/dom/DOMElement.hpp>

#include "Core/Types/UUID.h"

/// The forms of values and names that a lossless import accepts.
namespace Vantor::XML2Partition::LosslessForms {

/// The whole text of an attribute, or of an element without children, apart from comments. Editors may split it into
/// several nodes.
/// @throws InvalidFormat naming a child element.
wstring plainText(const xercesc::DOMNode& node);

/// Text other than white space directly within an element, quoted and shortened; empty for none.
std::string strayText(const xercesc::DOMNode& node);
/// @throws InvalidFormat when there is such text, for elements that hold elements only.
void refuseText(const xercesc::DOMNode& node);

/// A number. @throws InvalidFormat with its name unless the text is a number from `least` to `most`.
int64 number(const wstring& text, int64 least, int64 most, const char16_t* name);

/// The attribute of a set's element that holds one of its identifiers; null when there is none.
const xercesc::DOMNode* identifierAttribute(const xercesc::DOMElement& set, const wstring& name);

/// The identifier in an attribute; none without attribute (null) and for any other text.
std::optional<Types::UUID> identifierIn(const xercesc::DOMNode* attribute);

/// Whether an element holds what the dictionary does not name (extensions, dark sets), under any prefix.
/// @param name  from the vocabulary; its prefix is ignored.
bool isGroupsElement(const xercesc::DOMElement& element, std::u16string_view name);
/// An attribute of such an element; null when there is none.
const xercesc::DOMNode* groupsAttribute(const xercesc::DOMElement& element, std::u16string_view name);
/// Its text; empty when there is none.
wstring groupsText(const xercesc::DOMElement& element, std::u16string_view name);

/// The attribute of a pointer that names its target; null when an element is no pointer.
const xercesc::DOMNode* targetAttribute(const xercesc::DOMElement& element);

}  // namespace Vantor::XML2Partition::LosslessForms
