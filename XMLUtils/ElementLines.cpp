#include "XMLUtils/ElementLines.h"

#include <algorithm>
#include <string_view>
#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/parsers/DOMLSParserImpl.hpp>

#include "XMLUtils/Initializer.h"

namespace Vantor::XMLUtils {

namespace {

bool isBlank(const xercesc::DOMNode& node) {
  const std::u16string_view text = node.getNodeValue();
  return text.find_first_not_of(u" \t\n\r") == std::u16string_view::npos;
}

/// White space between elements has no meaning; its nodes would take as much memory as the elements. The document uses
/// the memory again.
void removeIndentation(xercesc::DOMNode& node) {
  if (static_cast<xercesc::DOMElement&>(node).getFirstElementChild() == nullptr) return;
  for (xercesc::DOMNode *child = node.getFirstChild(), *next = nullptr; child != nullptr; child = next) {
    next = child->getNextSibling();
    if (child->getNodeType() == xercesc::DOMNode::TEXT_NODE && isBlank(*child)) node.removeChild(child)->release();
  }
}

class LineParser : public xercesc::DOMLSParserImpl {
 public:
  explicit LineParser(ElementLines& lines) : lines_(lines) {}

  void startElement(const xercesc::XMLElementDecl& declaration, unsigned int uri, const XMLCh* prefix,
                    const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, XMLSize_t count, bool isEmpty,
                    bool isRoot) override {
    DOMLSParserImpl::startElement(declaration, uri, prefix, attributes, count, isEmpty, isRoot);
    lines_.enter(*getCurrentNode(), getScanner()->getLocator()->getLineNumber());
  }

  void endElement(const xercesc::XMLElementDecl& declaration, unsigned int uri, bool isRoot,
                  const XMLCh* prefix) override {
    DOMLSParserImpl::endElement(declaration, uri, isRoot, prefix);
    removeIndentation(*getCurrentNode());
  }

 private:
  ElementLines& lines_;
};

}  // namespace

Holder<xercesc::DOMLSParser> ElementLines::createParser() {
  Initializer::instance();
  return Holder<xercesc::DOMLSParser>(new LineParser(*this));
}

uint64 ElementLines::lineOf(const xercesc::DOMNode& node) const {
  const xercesc::DOMNode* at = &node;
  if (at->getNodeType() == xercesc::DOMNode::ATTRIBUTE_NODE) {
    at = static_cast<const xercesc::DOMAttr&>(node).getOwnerElement();
  }
  while (at != nullptr && at->getNodeType() != xercesc::DOMNode::ELEMENT_NODE) at = at->getParentNode();
  if (!isSorted_) {
    lines_.shrink_to_fit();
    std::sort(lines_.begin(), lines_.end());
    isSorted_ = true;
  }
  const auto found = std::lower_bound(lines_.begin(), lines_.end(), Entry(at, 0));
  return found == lines_.end() || found->first != at ? 0 : found->second;
}

void ElementLines::enter(const xercesc::DOMNode& element, uint64 line) {
  lines_.emplace_back(&element, line);
  isSorted_ = false;
}

}  // namespace Vantor::XMLUtils
