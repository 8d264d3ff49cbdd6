#include "XMLUtils/StartTagWriter.h"

#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/dom/DOMNode.hpp>

#include "Core/Platform/Numbers.h"
#include "XMLUtils/CharacterWriter.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XMLUtils {

namespace {

using std::u16string_view;
using xercesc::DOMNamedNodeMap;
using xercesc::DOMNode;

constexpr u16string_view kXmlns = u"xmlns";

/// Whether an attribute declares a namespace. Its name decides, because `setAttribute` makes declarations as well.
bool isDeclaration(u16string_view name) {
  return name.substr(0, kXmlns.size()) == kXmlns && (name.size() == kXmlns.size() || name[kXmlns.size()] == u':');
}

u16string_view declaredPrefix(u16string_view name) {
  return name.size() == kXmlns.size() ? u16string_view() : name.substr(kXmlns.size() + 1);
}

/// `xmlns:p=""` would take a declaration back, which XML 1.0 cannot, and the fixed prefixes need no declaration.
bool isDeclarable(u16string_view prefix, u16string_view uri) {
  return prefix.empty() || (!uri.empty() && prefix != u"xml" && prefix != kXmlns);
}

/// Whether another name of the element needs the prefix in a meaning other than the attribute's.
bool isPrefixTaken(const DOMNode& element, const DOMNode& attribute) {
  const auto prefix = viewOf(attribute.getPrefix());
  if (viewOf(element.getPrefix()) == prefix) return true;
  const auto& attributes = *element.getAttributes();
  for (XMLSize_t i = 0, count = attributes.getLength(); i < count; ++i) {
    const auto& other = *attributes.item(i);
    if (viewOf(other.getPrefix()) == prefix && viewOf(other.getNamespaceURI()) != attribute.getNamespaceURI()) {
      return true;
    }
  }
  return false;
}

}  // namespace

std::size_t StartTagWriter::enter(const DOMNode& element) {
  const auto& attributes = *element.getAttributes();
  const auto scope = scopes_.enter();
  out_ += u'<';
  out_.append(element.getNodeName());
  bindDeclarations(attributes);
  fixElement(element, scope);
  for (XMLSize_t i = 0, count = attributes.getLength(); i < count; ++i) {
    const auto& attribute = *attributes.item(i);
    if (isDeclaration(attribute.getNodeName())) {
      writeDeclaration(attribute);
    } else {
      writeAttribute(attribute, fixAttribute(attribute, element, scope));
    }
  }
  return scope;
}

void StartTagWriter::bindDeclarations(const DOMNamedNodeMap& attributes) {
  for (XMLSize_t i = 0, count = attributes.getLength(); i < count; ++i) {
    const auto& attribute = *attributes.item(i);
    const u16string_view name = attribute.getNodeName();
    if (!isDeclaration(name)) continue;
    const auto uri = viewOf(attribute.getNodeValue());
    if (isDeclarable(declaredPrefix(name), uri)) scopes_.bind(declaredPrefix(name), uri);
  }
}

/// Binds the prefix of the element's name to its namespace in the DOM. A contradicting declaration of the element's own
/// is overridden here and written corrected by `writeDeclaration`.
void StartTagWriter::fixElement(const DOMNode& element, std::size_t scope) {
  const auto prefix = viewOf(element.getPrefix());
  const auto uri = viewOf(element.getNamespaceURI());
  if (scopes_.uri(prefix) == uri || !isDeclarable(prefix, uri)) return;
  const bool isDeclaredHere = scopes_.isBoundSince(scope, prefix);
  if (element.getLocalName() == nullptr) {
    // An element of createElement has no namespace; only its own attributes and the text of its name imply some.
    const bool isQualified = u16string_view(element.getNodeName()).find(u':') != u16string_view::npos;
    if (isQualified || isDeclaredHere) return;
  }
  if (isDeclaredHere) return scopes_.bind(prefix, uri);
  declare(prefix, uri);
}

/// Returns the prefix to write in place of the attribute's own; empty to write its name as it is.
u16string_view StartTagWriter::fixAttribute(const DOMNode& attribute, const DOMNode& element, std::size_t scope) {
  const auto prefix = viewOf(attribute.getPrefix());
  const auto uri = viewOf(attribute.getNamespaceURI());
  if (attribute.getLocalName() == nullptr || uri.empty()) return {};
  if (!prefix.empty()) {
    if (scopes_.uri(prefix) == uri) return {};
    if (isDeclarable(prefix, uri) && !scopes_.isBoundSince(scope, prefix) && !isPrefixTaken(element, attribute)) {
      declare(prefix, uri);
      return {};
    }
  }
  return otherPrefix(uri);
}

u16string_view StartTagWriter::otherPrefix(u16string_view uri) {
  const auto known = scopes_.prefixFor(uri);
  if (!known.empty()) {
    scopes_.bind(known, uri);  // so that no later attribute of this element takes the prefix over
    return known;
  }
  const auto fresh = freshPrefix();
  declare(fresh, uri);
  return fresh;
}

u16string_view StartTagWriter::freshPrefix() {
  for (std::size_t i = 0;; ++i) {
    if (i == freshPrefixes_.size()) freshPrefixes_.push_back(u"ns" + Platform::toDecimal(i));
    if (scopes_.uri(freshPrefixes_[i]).empty()) return freshPrefixes_[i];
  }
}

void StartTagWriter::declare(u16string_view prefix, u16string_view uri) {
  scopes_.bind(prefix, uri);
  out_ += u' ';
  out_.append(kXmlns);
  if (!prefix.empty()) out_.append(u":").append(prefix);
  writeValue(uri.data());
}

void StartTagWriter::writeDeclaration(const DOMNode& attribute) {
  const u16string_view name = attribute.getNodeName();
  if (!isDeclarable(declaredPrefix(name), viewOf(attribute.getNodeValue()))) return;
  out_ += u' ';
  out_.append(name);
  writeValue(scopes_.uri(declaredPrefix(name)).data());
}

void StartTagWriter::writeAttribute(const DOMNode& attribute, u16string_view prefix) {
  out_ += u' ';
  if (prefix.empty()) {
    out_.append(attribute.getNodeName());
  } else {
    out_.append(prefix).append(u":").append(attribute.getLocalName());
  }
  writeValue(attribute.getNodeValue());
}

void StartTagWriter::writeValue(const XMLCh* value) {
  out_.append(u"=\"");
  writeCharacters(out_, value, Place::kAttribute);
  out_ += u'"';
}

}  // namespace Vantor::XMLUtils
