#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include "Core/Platform/Containers.h"
#include "Core/Types/SimpleDataType.h"
#include "XMLBuilder/ImportDocument.h"

namespace Vantor::XML2Partition {

/// What values say that their failures come from; the lines that go with it are fixed as well.
constexpr const char* kValueSource = "XMLBuilder\\FromXMLElementVisitor";

/// Reads one value from the node that holds it, an element or an attribute.
///
/// Text is read as a stream in the classic locale reads it, without a check of the outcome: "12abc" is 12, "x" is 0,
/// and a number too large for its type keeps its low bits. Identifiers are the first token, texts and hexadecimal
/// payloads the whole text.
/// @return null for an element without children, and for a type that has no form of its own. In a lossless import an
///         element without children is an empty value, where the type has one.
/// @throws InvalidFormat for a payload or an identifier that is none, and for a missing child of a timestamp or of a
///         JPEG 2000 value. In a lossless import for whatever is no value of the type.
auto_ptr<Types::SimpleDataType> createValueFromNode(Types::Identifiers::Identifier type, const xercesc::DOMNode& node,
                                                    ImportDocument& document);

/// Bytes from pairs of hexadecimal digits in either case, without anything between them.
/// @throws InvalidFormat "Value has invalid Length" for an odd count, which is looked at first, and
///         "Value contains non Hexadecimal characters".
Bytes parseHexString(const wstring& text);

}  // namespace Vantor::XML2Partition
