#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include "Core/Platform/Containers.h"
#include "Core/Types/Collection.h"
#include "XMLBuilder/ReadingRules.h"

namespace Vantor::XML2Partition {

/// The source that failures of values name; the lines that go with it are fixed as well.
constexpr const char* kValueSource = "XMLBuilder\\FromXMLElementVisitor";

/// Reads one value from the node that holds it, an element or an attribute.
/// @return null for an element without children, and for a type without a form, unless the rules have a value for
///         these.
/// @throws InvalidFormat for a text that the rules refuse, and for a missing child of a timestamp or of a JPEG 2000
///         value.
auto_ptr<Types::SimpleDataType> createValueFromNode(Types::Identifiers::Identifier type, const xercesc::DOMNode& node,
                                                    ReadingRules& rules);

/// Reads a value that is one text.
///
/// The text is read as a stream in the classic locale reads it, without a check of the outcome: "12abc" is 12, "x" is
/// 0, and a number too large for its type keeps its low bits. Identifiers are the first token, texts and hexadecimal
/// payloads the whole text.
/// @param node  the node of the text; only its name is used.
/// @return null for a type that is not written as one text.
/// @throws InvalidFormat for a malformed payload or identifier.
auto_ptr<Types::SimpleDataType> readText(Types::Identifiers::Identifier type, const xercesc::DOMNode& node,
                                         const wstring& text);

/// Whether values of a type vary in size.
bool isVariableSize(Types::Identifiers::Identifier type);

/// The most octets of padding in one collection, so that a short document cannot demand gigabytes.
constexpr uint64 kMostPadding = uint64{1} << 24;

/// Fills a collection, item by item.
class CollectionItems {
 public:
  explicit CollectionItems(Types::Collection& collection) : collection_(collection) {}

  /// @param item  null adds nothing. An item without octets is padded to the size of the others.
  /// @throws InvalidLength for an item that differs in size from the others, and for too much padding.
  void append(auto_ptr<Types::SimpleDataType> item);

 private:
  Types::Collection& collection_;
  uint64 emptyItems_ = 0;
};

/// Bytes from pairs of hexadecimal digits in either case, without anything between them.
/// @throws InvalidFormat "Value has invalid Length" for an odd count, which is checked first, and "Value contains non
///         Hexadecimal characters".
Bytes parseHexString(const wstring& text);

}  // namespace Vantor::XML2Partition
