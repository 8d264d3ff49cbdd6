#pragma once

#include <optional>
#include <string_view>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "Core/Types/SimpleDataType.h"
#include "Core/Types/UUID.h"
#include "XMLBuilder/ReadingRules.h"

/// The forms of values and names that a lossless import accepts.
namespace Vantor::XML2Partition::LosslessForms {

/// The text of a value in the form that the exact reader accepts: without white space around numbers and identifiers,
/// booleans as digits.
/// @throws InvalidFormat with the reason when the text is not a value of the type.
wstring exactText(Types::Identifiers::Identifier type, const wstring& text);

/// The whole text of an attribute, or of an element without children, apart from comments. Editors may split it into
/// several nodes.
/// @throws InvalidFormat naming a child element.
wstring plainText(const xercesc::DOMNode& node);

/// Whether text other than white space stands directly within an element.
bool hasText(const xercesc::DOMNode& node);
/// That text, quoted and shortened; empty for none.
std::string strayText(const xercesc::DOMNode& node);
/// @throws InvalidFormat when it does, for elements that hold elements only.
void refuseText(const xercesc::DOMNode& node);

/// The value of an element that holds nothing: an empty text or stream of bytes.
/// @throws InvalidFormat for types that have no such value.
auto_ptr<Types::SimpleDataType> emptyValue(Types::Identifiers::Identifier type);

/// A value of a type that is written as text but that the exact reader cannot read; null for every other type.
auto_ptr<Types::SimpleDataType> readUncommon(Types::Identifiers::Identifier type, const wstring& text);

/// The octets in a child of a compound value, from hexadecimal digits. An empty text stands for none, which the exact
/// reader refuses.
/// @throws InvalidFormat for any other text.
Bytes bytes(const wstring& text);

/// The number in a child of a compound value.
/// @throws InvalidFormat naming the child unless the text is a number from `least` to `most`.
int64 number(const wstring& text, int64 least, int64 most, const char16_t* name);

/// Milliseconds from units of 4 ms, in which documents have the fraction of a second (ST 377-1).
constexpr uint16 milliSeconds(uint8 quarters) { return static_cast<uint16>(quarters * 4); }

/// The children of a compound value: in either vocabulary, under any prefix.
/// @param prefix  that of their namespace in documents of our own.
std::vector<const xercesc::DOMElement*> fieldsNamed(const xercesc::DOMNode& node, std::u16string_view prefix,
                                                    std::u16string_view name);
/// @param mayRepeat  whether children may come more than once.
/// @throws InvalidFormat for anything in a compound value other than its children, one of each name.
void checkFields(const xercesc::DOMNode& node, std::u16string_view prefix, FieldNames names, bool mayRepeat);

/// The attribute of a set's element that holds one of its identifiers; null when there is none.
const xercesc::DOMNode* identifierAttribute(const xercesc::DOMElement& set, const wstring& name);

/// The identifier in an attribute; none without attribute (null) and for any other text.
std::optional<Types::UUID> identifierIn(const xercesc::DOMNode* attribute);

/// Whether an element holds what the dictionary does not name (extensions, dark sets), under any prefix.
/// @param name  from the vocabulary; its prefix is ignored.
bool isGroupsElement(const xercesc::DOMElement& element, std::u16string_view name);
/// An attribute of such an element; null when there is none.
const xercesc::DOMNode* groupsAttribute(const xercesc::DOMElement& element, std::u16string_view name);

/// The attribute of a pointer that names its target; null when an element is no pointer.
const xercesc::DOMNode* targetAttribute(const xercesc::DOMElement& element);
/// Whether a pointer has the name of those with a missing target.
bool isDangling(const xercesc::DOMElement& element);

}  // namespace Vantor::XML2Partition::LosslessForms
