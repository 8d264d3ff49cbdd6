#include "XMLBuilder/LosslessForms.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string>
#include <xercesc/dom/DOMAttr.hpp>

#include "Core/MetaMetadata/Vocabulary.h"
#include "Core/Platform/Raise.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/ValueText.h"
#include "XMLBuilder/NodeText.h"
#include "XMLBuilder/ValueFromXML.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/ChildLookup.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XML2Partition::LosslessForms {

using namespace Types::Identifiers;
using Exceptions::InvalidFormat;
using Exceptions::raise;
using xercesc::DOMElement;
using xercesc::DOMNode;

namespace {

bool isIn(const DOMNode& node, std::u16string_view uri) {
  const auto* found = node.getNamespaceURI();
  return found != nullptr && uri == found;
}

bool isField(const DOMElement& child, std::u16string_view prefix) {
  if (prefix == XMLBuilder::Vocabulary::kS422MTypesPrefix) return isIn(child, XMLBuilder::Vocabulary::kS422MTypesURI);
  return isIn(child, XMLBuilder::Vocabulary::kTypesURI) || isIn(child, MetaMetadata::kST434Types.uri);
}

bool isTextNode(const DOMNode& node) {
  return node.getNodeType() == DOMNode::TEXT_NODE || node.getNodeType() == DOMNode::CDATA_SECTION_NODE;
}

wstring nameOf(const DOMElement& element) { return XMLUtils::utf16ToWstring(element.getNodeName()); }

}  // namespace

wstring exactText(Identifier type, const wstring& text) { return Types::checkedText(type, text); }

wstring plainText(const DOMNode& node) {
  if (node.getNodeType() == DOMNode::ATTRIBUTE_NODE) return nodeText(node);
  if (const DOMElement* child = XMLUtils::firstChildElement(node)) {
    raise<InvalidFormat>("{} is an element within a value that has none", Types::excerpt(nameOf(*child)));
  }
  return textContent(node, BlankText::kKeep);
}

bool hasText(const DOMNode& node) {
  for (const DOMNode* child = node.getFirstChild(); child != nullptr; child = child->getNextSibling()) {
    if (isTextNode(*child) && !Types::trimmed(XMLUtils::utf16ToWstring(child->getNodeValue())).empty()) return true;
  }
  return false;
}

std::string strayText(const DOMNode& node) {
  for (const DOMNode* child = node.getFirstChild(); child != nullptr; child = child->getNextSibling()) {
    if (!isTextNode(*child)) continue;
    const wstring text(Types::trimmed(XMLUtils::utf16ToWstring(child->getNodeValue())));
    if (!text.empty()) return Utils::wstringToString(Types::excerpt(text));
  }
  return {};
}

void refuseText(const DOMNode& node) {
  const auto text = strayText(node);
  if (!text.empty()) raise<InvalidFormat>("{} is text where only elements are expected", text);
}

auto_ptr<Types::SimpleDataType> emptyValue(Identifier type) {
  if (Types::hasEmptyText(type)) return Types::valueFromText(type, {});
  raise<InvalidFormat>("the element is empty, and the type {} has no empty value", Types::Identifiers::name(type));
}

auto_ptr<Types::SimpleDataType> readUncommon(Identifier type, const wstring& text) {
  // The exact reader loses a UTF16 that is white space.
  return type == kLocalTag || type == kDataValue || type == kUTF16 ? Types::valueFromText(type, text) : nullptr;
}

Bytes bytes(const wstring& text) { return parseHexString(exactText(kDataValue, text)); }

int64 number(const wstring& text, int64 least, int64 most, const char16_t* name) {
  const std::string digits = Platform::wstringToString(wstring(Types::trimmed(text)));
  int64 number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  const bool isNumber = error == std::errc() && end == digits.data() + digits.size();
  if (!isNumber || number < least || number > most) {
    raise<InvalidFormat>("{} is no number from {} to {} for {}", Types::excerpt(text), least, most, wstring(name));
  }
  return number;
}

std::vector<const DOMElement*> fieldsNamed(const DOMNode& node, std::u16string_view prefix, std::u16string_view name) {
  std::vector<const DOMElement*> found;
  for (const DOMElement* child : XMLUtils::childElements(node)) {
    if (name == child->getLocalName() && isField(*child, prefix)) found.push_back(child);
  }
  return found;
}

void checkFields(const DOMNode& node, std::u16string_view prefix, FieldNames names, bool mayRepeat) {
  refuseText(node);
  std::vector<std::u16string_view> found;
  for (const DOMElement* child : XMLUtils::childElements(node)) {
    const std::u16string_view name = child->getLocalName();
    const auto isIt = [name](std::u16string_view one) { return name == one; };
    if (!isField(*child, prefix) || !std::any_of(names.begin(), names.end(), isIt)) {
      raise<InvalidFormat>("{} is no part of the value", Types::excerpt(nameOf(*child)));
    }
    if (mayRepeat) continue;
    if (std::any_of(found.begin(), found.end(), isIt)) {
      raise<InvalidFormat>("{} is there a second time", Types::excerpt(nameOf(*child)));
    }
    found.push_back(name);
  }
}

const DOMNode* identifierAttribute(const DOMElement& set, const wstring& name) {
  return set.getAttributeNodeNS(wstring(MetaMetadata::kLegacyElements.uri).c_str(), name.c_str());
}

std::optional<Types::UUID> identifierIn(const DOMNode* attribute) {
  if (attribute == nullptr) return std::nullopt;
  try {
    return Types::UUID(exactText(kUUID, nodeText(*attribute)), kDottedForm);
  } catch (const Exceptions::InvalidFormat&) {
    return std::nullopt;
  }
}

bool isGroupsElement(const DOMElement& element, std::u16string_view name) {
  return isIn(element, XMLBuilder::Vocabulary::kGroupsURI) &&
         element.getLocalName() == XMLBuilder::Vocabulary::localName(name);
}

const DOMNode* groupsAttribute(const DOMElement& element, std::u16string_view name) {
  return element.getAttributeNodeNS(XMLBuilder::Vocabulary::kGroupsURI.data(),
                                    wstring(XMLBuilder::Vocabulary::localName(name)).c_str());
}

const DOMNode* targetAttribute(const DOMElement& element) {
  static const wstring uri(XMLBuilder::Vocabulary::kTypesURI);
  return element.getAttributeNodeNS(uri.c_str(), u"TargetInstance");
}

bool isDangling(const DOMElement& element) { return std::u16string_view(element.getLocalName()) == u"Dangling_REF"; }

}  // namespace Vantor::XML2Partition::LosslessForms
