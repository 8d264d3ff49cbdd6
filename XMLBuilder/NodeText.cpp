#include "XMLBuilder/NodeText.h"

#include <xercesc/dom/DOMElement.hpp>

#include "XMLUtils/Strings.h"

namespace Vantor::XML2Partition {

using xercesc::DOMNode;

namespace {

constexpr const char16_t* kStreamWhiteSpace = u" \t\n\v\f\r";

}  // namespace

wstring nodeText(const DOMNode& node) {
  if (node.getNodeType() == DOMNode::ATTRIBUTE_NODE) return XMLUtils::utf16ToWstring(node.getNodeValue());
  const DOMNode* child = node.getFirstChild();
  return child == nullptr ? wstring() : XMLUtils::utf16ToWstring(child->getNodeValue());
}

wstring firstToken(const wstring& text) {
  const auto begin = text.find_first_not_of(kStreamWhiteSpace);
  if (begin == wstring::npos) return {};
  const auto end = text.find_first_of(kStreamWhiteSpace, begin);
  return text.substr(begin, end == wstring::npos ? end : end - begin);
}

wstring attributeText(const DOMNode& element, const char16_t* qualifiedName) {
  if (element.getNodeType() != DOMNode::ELEMENT_NODE) return {};
  return XMLUtils::utf16ToWstring(static_cast<const xercesc::DOMElement&>(element).getAttribute(qualifiedName));
}

}  // namespace Vantor::XML2Partition
