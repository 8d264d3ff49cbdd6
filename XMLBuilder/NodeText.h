#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include "Core/Platform/Types.h"

/// Texts of DOM nodes as the readers take them.
namespace Vantor::XML2Partition {

/// An attribute's value, else the value of the node's first child; empty when there is none.
wstring nodeText(const xercesc::DOMNode& node);

/// The first run of text without white space; empty when there is none.
wstring firstToken(const wstring& text);

/// The value of an attribute looked up by its qualified name; empty when there is none.
wstring attributeText(const xercesc::DOMNode& element, const char16_t* qualifiedName);

}  // namespace Vantor::XML2Partition
