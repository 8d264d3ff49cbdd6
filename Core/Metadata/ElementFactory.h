#pragma once

#include <string_view>

#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Metadata/Element.h"

namespace Vantor {

/// Whether a property of this definition refers to sets, alone or as a collection.
bool isReference(const MetaMetadata::MetaElement& definition);
/// Whether a property of this definition is one value that is neither a collection nor a reference.
bool isSimple(const MetaMetadata::MetaElement& definition);

/// An unset property of the kind that its definition asks for; a `SimpleElement` without a definition.
/// @param owner  see `SimpleElement`.
auto_ptr<Element> makeElement(AttributeHandle attribute, MetadataSet* owner);

/// The value of a property of this definition; null when the bytes do not decode or would be written back differently.
auto_ptr<Types::SimpleDataType> decodeValue(const MetaMetadata::MetaElement& definition, const uint8* bytes,
                                            std::size_t size);

/// The name of the definition's type for messages: "Batch of UInt16".
std::string typeName(const MetaMetadata::MetaElement& definition);

/// Gives a property a value of its definition's type, as `decodeValue` makes it.
void setDecodedValue(Element& element, auto_ptr<Types::SimpleDataType> value);

}  // namespace Vantor
