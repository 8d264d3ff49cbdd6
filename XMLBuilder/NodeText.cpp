#include "XMLBuilder/NodeText.h"

#include "XMLUtils/Strings.h"

namespace Vantor::XML2Partition {

using xercesc::DOMNode;

namespace {

bool isIgnored(const DOMNode& node, BlankText blankText) {
  return blankText == BlankText::kIgnore && node.getNodeType() == DOMNode::TEXT_NODE &&
         XMLUtils::isBlank(node.getNodeValue());
}

bool isText(const DOMNode& node) {
  return node.getNodeType() != DOMNode::COMMENT_NODE && node.getNodeType() != DOMNode::PROCESSING_INSTRUCTION_NODE;
}

void appendTextContent(const DOMNode& node, BlankText blankText, wstring& text) {
  if (node.getNodeType() != DOMNode::ELEMENT_NODE) {
    text += XMLUtils::utf16ToWstring(node.getNodeValue());
    return;
  }
  for (const DOMNode* child = node.getFirstChild(); child != nullptr; child = child->getNextSibling()) {
    if (isText(*child) && !isIgnored(*child, blankText)) appendTextContent(*child, blankText, text);
  }
}

}  // namespace

const DOMNode* firstChild(const DOMNode& node, BlankText blankText) {
  const DOMNode* child = node.getFirstChild();
  while (child != nullptr && isIgnored(*child, blankText)) child = child->getNextSibling();
  return child;
}

wstring textContent(const DOMNode& node, BlankText blankText) {
  wstring text;
  appendTextContent(node, blankText, text);
  return text;
}

wstring nodeText(const DOMNode& node, BlankText blankText) {
  if (node.getNodeType() == DOMNode::ATTRIBUTE_NODE) return XMLUtils::utf16ToWstring(node.getNodeValue());
  const DOMNode* child = firstChild(node, blankText);
  return child == nullptr ? wstring() : XMLUtils::utf16ToWstring(child->getNodeValue());
}

}  // namespace Vantor::XML2Partition
