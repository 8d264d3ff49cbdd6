#pragma once

#include <limits>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

#include "Core/Platform/Types.h"
#include "XMLUtils/Holder.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
class DOMNode;
class DOMXPathNSResolver;
XERCES_CPP_NAMESPACE_END

namespace Vantor::XMLUtils {

/// The node after another in document order, `top` or below it; null at the end. Does not recurse, whatever the depth.
xercesc::DOMNode* nextInTree(const xercesc::DOMNode& node, const xercesc::DOMNode& top);

/// The element children of a node, in document order: the XPath "./*".
std::vector<xercesc::DOMElement*> childElements(const xercesc::DOMNode& context);
/// The first of them; null when there is none.
xercesc::DOMElement* firstChildElement(const xercesc::DOMNode& context);

/// Finds children of nodes by prefix and name, as XPath child steps do: "./prefix:name".
///
/// A prefix means what it means at one node, the scope. Once it resolves, walking the children takes a thousandth of
/// the time of an XPath evaluation; what does not resolve, and what is no name, goes to the XPath engine, so that
/// results and errors are the engine's in every case. (Built without one, the look-up raises the error of an unbound
/// prefix itself, and refuses what is no name.)
///
/// For one thread, and for as long as the document lives.
class ChildLookup {
 public:
  explicit ChildLookup(const xercesc::DOMNode& scope);
  ~ChildLookup();
  ChildLookup(const ChildLookup&) = delete;
  ChildLookup& operator=(const ChildLookup&) = delete;

  /// The namespace that a prefix is bound to at the scope; empty when it is bound to none.
  const wstring& namespaceOf(const wstring& prefix);
  /// Binds a prefix unless the scope binds it.
  void bindIfUnbound(const wstring& prefix, const wstring& uri);

  /// All children of that name, in document order.
  /// @throws xercesc::DOMException, with code 51 for an unbound prefix.
  std::vector<xercesc::DOMElement*> all(const xercesc::DOMNode& context, const wstring& prefix, const wstring& name) {
    return find(context, prefix, name, std::numeric_limits<std::size_t>::max());
  }
  /// The first of them; null when there is none.
  xercesc::DOMElement* first(const xercesc::DOMNode& context, const wstring& prefix, const wstring& name);

  /// The same through the XPath engine alone. @param expression  such as "./types:Code".
  std::vector<xercesc::DOMElement*> evaluate(const xercesc::DOMNode& context, const wstring& expression);

 private:
  struct Binding {
    wstring prefix;
    wstring uri;
    bool isAdded;  // by `bindIfUnbound`
  };
  std::vector<xercesc::DOMElement*> find(const xercesc::DOMNode& context, const wstring& prefix, const wstring& name,
                                         std::size_t most);
  /// What the prefix means, looked up when it is first asked for.
  Binding& bindingOf(const wstring& prefix);
  wstring lookUpNamespace(const wstring& prefix);
  /// The engine's own view of the scope, made when it is first needed.
  const xercesc::DOMXPathNSResolver& resolver();
  /// Whether a walk answers as the engine does.
  bool canWalk(const wstring& prefix, const wstring& name);

  const xercesc::DOMNode& scope_;
  Holder<xercesc::DOMXPathNSResolver> resolver_;
  std::vector<Binding> bindings_;  // as asked for; a document uses a handful
};

}  // namespace Vantor::XMLUtils
