#pragma once

#include <cstddef>
#include <deque>
#include <string_view>
#include <xercesc/util/XercesDefs.hpp>

#include "Core/Platform/Types.h"
#include "XMLUtils/NamespaceScopes.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMNamedNodeMap;
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace Vantor::XMLUtils {

/// Writes the names and attributes of nested elements, adding the namespace declarations that the DOM lacks.
class StartTagWriter {
 public:
  /// @param out  what the text is appended to.
  explicit StartTagWriter(wstring& out) : out_(out) {}

  /// Appends `<`, the name and the attributes of an element, without the closing bracket.
  /// @return what `leave` takes when the element ends.
  std::size_t enter(const xercesc::DOMNode& element);
  void leave(std::size_t scope) { scopes_.leave(scope); }

 private:
  void bindDeclarations(const xercesc::DOMNamedNodeMap& attributes);
  void fixElement(const xercesc::DOMNode& element, std::size_t scope);
  std::u16string_view fixAttribute(const xercesc::DOMNode& attribute, const xercesc::DOMNode& element,
                                   std::size_t scope);
  std::u16string_view otherPrefix(std::u16string_view uri);
  std::u16string_view freshPrefix();
  void declare(std::u16string_view prefix, std::u16string_view uri);

  void writeDeclaration(const xercesc::DOMNode& attribute);
  void writeAttribute(const xercesc::DOMNode& attribute, std::u16string_view prefix);
  void writeValue(const XMLCh* value);

  wstring& out_;
  NamespaceScopes scopes_;
  std::deque<wstring> freshPrefixes_;  // a deque, because scopes_ keeps views
};

}  // namespace Vantor::XMLUtils
