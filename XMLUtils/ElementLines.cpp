#include "XMLUtils/ElementLines.h"

#include <algorithm>
#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMElement.hpp>

namespace Vantor::XMLUtils {

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
