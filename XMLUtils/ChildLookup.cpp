#include "XMLUtils/ChildLookup.h"

#include <algorithm>
#include <memory>
#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/dom/DOMXPathException.hpp>
#include <xercesc/dom/DOMXPathExpression.hpp>
#include <xercesc/dom/DOMXPathNSResolver.hpp>
#include <xercesc/dom/DOMXPathResult.hpp>
#include <xercesc/util/XMLChar.hpp>
#include <xercesc/util/XMLString.hpp>

#include "XMLUtils/Strings.h"

#if VANTOR_WITH_XQILLA
#include <xqilla/xqilla-dom3.hpp>
#endif

namespace Vantor::XMLUtils {

using xercesc::DOMElement;
using xercesc::DOMNode;

namespace {

bool isNamed(const DOMElement& element, const wstring& uri, const wstring& name) {
  return xercesc::XMLString::equals(element.getLocalName(), name.c_str()) &&
         xercesc::XMLString::equals(element.getNamespaceURI(), uri.c_str());
}

/// The namespace to which an element and those around it bind a prefix; null for none. The document's own look-up steps
/// through all attributes of each, which would take most of an import where there are many.
const XMLCh* declaredNamespace(const DOMElement& element, const wstring& prefix) {
  const wstring declaration = u"xmlns:" + prefix;
  for (const DOMNode* node = &element; node != nullptr && node->getNodeType() == DOMNode::ELEMENT_NODE;
       node = node->getParentNode()) {
    if (node->getPrefix() != nullptr && prefix == node->getPrefix()) return node->getNamespaceURI();
    const auto* attribute = static_cast<const DOMElement*>(node)->getAttributeNode(declaration.c_str());
    if (attribute != nullptr) return attribute->getValue();
  }
  return nullptr;
}

bool isName(const wstring& text) { return xercesc::XMLChar1_0::isValidNCName(text.c_str(), text.size()); }

#if !VANTOR_WITH_XQILLA
/// The failure of a path when there is no engine to report it, in the engine's words.
class PathException : public xercesc::DOMException {
 public:
  explicit PathException(wstring message) : message_(std::make_shared<const wstring>(std::move(message))) {
    code = xercesc::DOMXPathException::INVALID_EXPRESSION_ERR;
    msg = message_->c_str();
  }

 private:
  std::shared_ptr<const wstring> message_;  // shared by copies
};
#endif

}  // namespace

DOMNode* nextInTree(const DOMNode& node, const DOMNode& top) {
  if (auto* child = node.getFirstChild()) return child;
  for (const DOMNode* at = &node; at != &top; at = at->getParentNode()) {
    if (auto* sibling = at->getNextSibling()) return sibling;
  }
  return nullptr;
}

DOMElement* firstChildElement(const DOMNode& context) {
  DOMNode* child = context.getFirstChild();
  while (child != nullptr && child->getNodeType() != DOMNode::ELEMENT_NODE) child = child->getNextSibling();
  return static_cast<DOMElement*>(child);
}

std::vector<DOMElement*> childElements(const DOMNode& context) {
  std::vector<DOMElement*> children;
  for (auto* child = firstChildElement(context); child != nullptr; child = child->getNextElementSibling()) {
    children.push_back(child);
  }
  return children;
}

ChildLookup::ChildLookup(const DOMNode& scope) : scope_(scope) {}

ChildLookup::~ChildLookup() = default;

const xercesc::DOMXPathNSResolver& ChildLookup::resolver() {
  if (resolver_.get() == nullptr) {
    resolver_.reset(scope_.getOwnerDocument()->createNSResolver(&scope_));
    for (const auto& binding : bindings_) {
      if (binding.isAdded) resolver_->addNamespaceBinding(binding.prefix.c_str(), binding.uri.c_str());
    }
  }
  return *resolver_;
}

ChildLookup::Binding& ChildLookup::bindingOf(const wstring& prefix) {
  const auto known = std::find_if(bindings_.begin(), bindings_.end(),
                                  [&prefix](const Binding& binding) { return binding.prefix == prefix; });
  if (known != bindings_.end()) return *known;
  bindings_.push_back({prefix, lookUpNamespace(prefix), false});
  return bindings_.back();
}

const wstring& ChildLookup::namespaceOf(const wstring& prefix) { return bindingOf(prefix).uri; }

wstring ChildLookup::lookUpNamespace(const wstring& prefix) {
  if (scope_.getNodeType() == DOMNode::ELEMENT_NODE && isName(prefix) && prefix.compare(0, 3, u"xml") != 0) {
    return utf16ToWstring(declaredNamespace(static_cast<const DOMElement&>(scope_), prefix));
  }
  return utf16ToWstring(resolver().lookupNamespaceURI(prefix.c_str()));
}

void ChildLookup::bindIfUnbound(const wstring& prefix, const wstring& uri) {
  Binding& binding = bindingOf(prefix);
  if (!binding.uri.empty()) return;
  binding.uri = uri;
  binding.isAdded = true;
  if (resolver_.get() != nullptr) resolver_->addNamespaceBinding(prefix.c_str(), uri.c_str());
}

bool ChildLookup::canWalk(const wstring& prefix, const wstring& name) {
  return isName(prefix) && isName(name) && !namespaceOf(prefix).empty();
}

std::vector<DOMElement*> ChildLookup::find(const DOMNode& context, const wstring& prefix, const wstring& name,
                                           std::size_t most) {
  if (!canWalk(prefix, name)) return evaluate(context, u"./" + prefix + u":" + name);
  const wstring uri = namespaceOf(prefix);
  std::vector<DOMElement*> found;
  for (auto* child = firstChildElement(context); child != nullptr && found.size() < most;
       child = child->getNextElementSibling()) {
    if (isNamed(*child, uri, name)) found.push_back(child);
  }
  return found;
}

DOMElement* ChildLookup::first(const DOMNode& context, const wstring& prefix, const wstring& name) {
  const auto found = find(context, prefix, name, 1);
  return found.empty() ? nullptr : found.front();
}

#if VANTOR_WITH_XQILLA

std::vector<DOMElement*> ChildLookup::evaluate(const DOMNode& context, const wstring& expression) {
  auto* document = context.getOwnerDocument();
  const Holder<xercesc::DOMXPathExpression> compiled(document->createExpression(expression.c_str(), &resolver()));
  // ITERATOR_RESULT is an extension of XQilla's, unknown to the interface.
  const auto type = static_cast<xercesc::DOMXPathResult::ResultType>(XPath2Result::ITERATOR_RESULT);
  const Holder<xercesc::DOMXPathResult> result(compiled->evaluate(&context, type, nullptr));
  std::vector<DOMElement*> found;
  while (result->iterateNext()) {
    auto* node = result->getNodeValue();
    if (node != nullptr && node->getNodeType() == DOMNode::ELEMENT_NODE)
      found.push_back(static_cast<DOMElement*>(node));
  }
  return found;
}

#else

std::vector<DOMElement*> ChildLookup::evaluate(const DOMNode&, const wstring& expression) {
  const auto colon = expression.find(u':');
  const wstring prefix = expression.substr(2, colon == wstring::npos ? wstring::npos : colon - 2);
  if (colon == wstring::npos || !isName(prefix) || !isName(expression.substr(colon + 1))) {
    throw PathException(u"'" + expression + u"' names no child [err:XPST0003] at :1:3");
  }
  throw PathException(u"No namespace for prefix '" + prefix + u"' [err:XPST0081] at :1:3");
}

#endif

}  // namespace Vantor::XMLUtils
