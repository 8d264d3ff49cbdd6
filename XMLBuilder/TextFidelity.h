#pragma once

#include "Core/Metadata/Element.h"

namespace Vantor::XMLBuilder {

/// Whether a reader of the property's text form (`ToXMLBaseTypeVisitor`) gets the same octets back.
///
/// Final NULs of a text do not count, except in the items of a collection, which are all of one size. Neither does the
/// item size of a collection without items.
/// @param property  no reference, nor a collection of references: these are written as sets and pointers.
bool isRestoredFromText(const Element& property);

}  // namespace Vantor::XMLBuilder
