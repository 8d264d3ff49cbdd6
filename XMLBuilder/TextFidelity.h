#pragma once

#include "Core/Metadata/Element.h"

namespace Vantor::XMLBuilder {

/// Whether the property's text form (`ToXMLBaseTypeVisitor`) reads back as the same octets.
///
/// Final NULs of a text do not count, except in the items of a collection, which are all of one size, and in properties
/// in namespaces of their own. Neither does the item size of a collection without items.
/// @param property  neither a reference nor a collection of them, which are written as sets and pointers.
bool isRestoredFromText(const Element& property);

}  // namespace Vantor::XMLBuilder
