#pragma once

#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "Core/Types/SimpleDataType.h"

/// Where a lossless import takes other forms than the exact one: each of them is here.
namespace Vantor::XML2Partition::LosslessForms {

/// The text of a value as the exact reader takes it: without white space around numbers and identifiers, booleans as
/// digits.
/// @throws InvalidFormat saying why the text is no value of the type.
wstring exactText(Types::Identifiers::Identifier type, const wstring& text);

/// The value of an element that holds nothing: an empty text or stream of bytes; null for types that have no such
/// value.
auto_ptr<Types::SimpleDataType> emptyValue(Types::Identifiers::Identifier type);

/// A value of the types that the exact reader has no form for although they are written as text: null for every other.
auto_ptr<Types::SimpleDataType> readUncommon(Types::Identifiers::Identifier type, const wstring& text);

/// The number that a compound value has in one of its children.
/// @throws InvalidFormat unless it is one from `least` to `most`; naming the child.
int64 number(const wstring& text, int64 least, int64 most, const char16_t* name);

/// From the unit of ST 377-1, 1/250 of a second, in which fractions are written, to milliseconds.
constexpr int64 milliSeconds(int64 quarters) { return quarters * 4; }

/// The children of a compound value: in either vocabulary, under any prefix.
std::vector<const xercesc::DOMElement*> typeChildren(const xercesc::DOMNode& node, std::u16string_view name);
std::vector<const xercesc::DOMElement*> s422MChildren(const xercesc::DOMNode& node, std::u16string_view name);

/// The attribute of a set's element that holds one of its identifiers; null when there is none.
const xercesc::DOMNode* identifierAttribute(const xercesc::DOMElement& set, const wstring& name);

/// Whether an element is one of those that hold what no dictionary names, under any prefix.
/// @param name  one of the vocabulary's; its prefix does not count.
bool isGroupsElement(const xercesc::DOMElement& element, std::u16string_view name);
/// An attribute of theirs; null when there is none.
const xercesc::DOMNode* groupsAttribute(const xercesc::DOMElement& element, std::u16string_view name);

/// The attribute that says which set is meant, in an element that stands for a set; null in every other element.
const xercesc::DOMNode* targetAttribute(const xercesc::DOMElement& element);
/// Whether such an element says that there is no set.
bool isDangling(const xercesc::DOMElement& element);

}  // namespace Vantor::XML2Partition::LosslessForms
