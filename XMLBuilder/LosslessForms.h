#pragma once

#include <optional>
#include <string_view>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "Core/Types/SimpleDataType.h"
#include "Core/Types/UUID.h"
#include "XMLBuilder/ReadingRules.h"

/// The forms of values and names that a lossless import takes.
namespace Vantor::XML2Partition::LosslessForms {

/// The text of a value as the exact reader takes it: without white space around numbers and identifiers, booleans as
/// digits.
/// @throws InvalidFormat saying why the text is no value of the type.
wstring exactText(Types::Identifiers::Identifier type, const wstring& text);

/// The text of an attribute, or of an element without others within: all of it, comments aside, of which editors make
/// several nodes.
/// @throws InvalidFormat naming an element within.
wstring plainText(const xercesc::DOMNode& node);

/// Whether text other than white space stands directly within an element.
bool hasText(const xercesc::DOMNode& node);
/// That text, quoted and shortened; empty for none.
std::string strayText(const xercesc::DOMNode& node);
/// @throws InvalidFormat when it does: the element is to hold elements alone.
void refuseText(const xercesc::DOMNode& node);

/// The value of an element that holds nothing: an empty text or stream of bytes.
/// @throws InvalidFormat for types that have no such value.
auto_ptr<Types::SimpleDataType> emptyValue(Types::Identifiers::Identifier type);

/// A value of the types that the exact reader has no form for although they are written as text: null for every other.
auto_ptr<Types::SimpleDataType> readUncommon(Types::Identifiers::Identifier type, const wstring& text);

/// The bytes that a compound value has in one of its children, in hexadecimal digits; an empty one has none, which the
/// exact reader does not take.
/// @throws InvalidFormat for any other text.
Bytes bytes(const wstring& text);

/// The number that a compound value has in one of its children.
/// @throws InvalidFormat unless it is one from `least` to `most`; naming the child.
int64 number(const wstring& text, int64 least, int64 most, const char16_t* name);

/// From the unit of ST 377-1, 1/250 of a second, in which fractions are written, to milliseconds.
constexpr uint16 milliSeconds(uint8 quarters) { return static_cast<uint16>(quarters * 4); }

/// The children of a compound value: in either vocabulary, under any prefix.
/// @param prefix  the one that stands for their namespace in documents of ours.
std::vector<const xercesc::DOMElement*> fieldsNamed(const xercesc::DOMNode& node, std::u16string_view prefix,
                                                    std::u16string_view name);
/// @param mayRepeat  whether children may come more than once.
/// @throws InvalidFormat for anything within a compound value but its children, one of each name.
void checkFields(const xercesc::DOMNode& node, std::u16string_view prefix, FieldNames names, bool mayRepeat);

/// The attribute of a set's element that holds one of its identifiers; null when there is none.
const xercesc::DOMNode* identifierAttribute(const xercesc::DOMElement& set, const wstring& name);

/// The identifier in an attribute; none for no attribute (null) and for a text that is none.
std::optional<Types::UUID> identifierIn(const xercesc::DOMNode* attribute);

/// Whether an element is one of those that hold what no dictionary names, under any prefix.
/// @param name  one of the vocabulary's; its prefix does not count.
bool isGroupsElement(const xercesc::DOMElement& element, std::u16string_view name);
/// An attribute of theirs; null when there is none.
const xercesc::DOMNode* groupsAttribute(const xercesc::DOMElement& element, std::u16string_view name);

/// The attribute that names the set, in an element that stands for one; null in every other element.
const xercesc::DOMNode* targetAttribute(const xercesc::DOMElement& element);
/// Whether such an element has the name of those whose set is missing.
bool isDangling(const xercesc::DOMElement& element);

}  // namespace Vantor::XML2Partition::LosslessForms
