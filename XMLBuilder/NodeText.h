#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include "Core/Platform/Types.h"

/// Texts of DOM nodes as the readers take them.
namespace Vantor::XML2Partition {

/// Whether text nodes that hold nothing but white space count. Ignoring them is as good as removing them from the
/// document first, in a fraction of the time.
enum class BlankText { kKeep, kIgnore };

/// The first child of a node, of whatever kind; null when there is none.
const xercesc::DOMNode* firstChild(const xercesc::DOMNode& node, BlankText blankText);

/// The text of a node and of everything below it, comments and processing instructions aside unless the node is one.
wstring textContent(const xercesc::DOMNode& node, BlankText blankText);

/// An attribute's value, else the value of the node's first child; empty when there is none.
wstring nodeText(const xercesc::DOMNode& node, BlankText blankText = BlankText::kKeep);

}  // namespace Vantor::XML2Partition
