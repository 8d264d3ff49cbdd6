#include "XMLBuilder/LosslessForms.h"

#include <charconv>
#include <xercesc/dom/DOMAttr.hpp>

#include "Core/MetaMetadata/Vocabulary.h"
#include "Core/Platform/Raise.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/ValueText.h"
#include "XMLBuilder/NodeText.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/ChildLookup.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XML2Partition::LosslessForms {

using Exceptions::InvalidFormat;
using Exceptions::raise;
using xercesc::DOMElement;
using xercesc::DOMNode;
using XMLUtils::viewOf;

wstring plainText(const DOMNode& node) {
  if (node.getNodeType() == DOMNode::ATTRIBUTE_NODE) return nodeText(node);
  if (const DOMElement* child = XMLUtils::firstChildElement(node)) {
    raise<InvalidFormat>("{} is an element within a value that has none", Types::excerpt(child->getNodeName()));
  }
  return textContent(node, BlankText::kKeep);
}

std::string strayText(const DOMNode& node) {
  for (const DOMNode* child = node.getFirstChild(); child != nullptr; child = child->getNextSibling()) {
    const auto type = child->getNodeType();
    if (type != DOMNode::TEXT_NODE && type != DOMNode::CDATA_SECTION_NODE) continue;
    const auto text = Types::trimmed(child->getNodeValue());
    if (!text.empty()) return Utils::wstringToString(Types::excerpt(text));
  }
  return {};
}

void refuseText(const DOMNode& node) {
  const auto text = strayText(node);
  if (!text.empty()) raise<InvalidFormat>("{} is text where only elements are expected", text);
}

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

const DOMNode* identifierAttribute(const DOMElement& set, const wstring& name) {
  return set.getAttributeNodeNS(wstring(MetaMetadata::kLegacyElements.uri).c_str(), name.c_str());
}

std::optional<Types::UUID> identifierIn(const DOMNode* attribute) {
  if (attribute == nullptr) return std::nullopt;
  try {
    return Types::UUID(Types::checkedText(Types::Identifiers::kUUID, nodeText(*attribute)), kDottedForm);
  } catch (const Exceptions::InvalidFormat&) {
    return std::nullopt;
  }
}

bool isGroupsElement(const DOMElement& element, std::u16string_view name) {
  return viewOf(element.getNamespaceURI()) == XMLBuilder::Vocabulary::kGroupsURI &&
         element.getLocalName() == XMLBuilder::Vocabulary::localName(name);
}

const DOMNode* groupsAttribute(const DOMElement& element, std::u16string_view name) {
  return element.getAttributeNodeNS(XMLBuilder::Vocabulary::kGroupsURI.data(),
                                    wstring(XMLBuilder::Vocabulary::localName(name)).c_str());
}

wstring groupsText(const DOMElement& element, std::u16string_view name) {
  const auto* attribute = groupsAttribute(element, name);
  return attribute == nullptr ? wstring() : nodeText(*attribute);
}

const DOMNode* targetAttribute(const DOMElement& element) {
  return element.getAttributeNodeNS(XMLBuilder::Vocabulary::kTypesURI.data(), u"TargetInstance");
}

}  // namespace Vantor::XML2Partition::LosslessForms
