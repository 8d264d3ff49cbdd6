#pragma once

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include "XMLBuilder/NamespaceMap.h"

namespace Vantor::XMLBuilder {

/// Shared by the writers of one document: the document, the namespaces in use, and the one container for sets that the
/// start set does not lead to. Lives for one call; the caller owns the document.
class ExportDocument {
 public:
  explicit ExportDocument(xercesc::DOMDocument& document) : document_(document) {}
  ExportDocument(const ExportDocument&) = delete;
  ExportDocument& operator=(const ExportDocument&) = delete;

  xercesc::DOMDocument& document() { return document_; }
  xercesc::DOMElement& root() { return *document_.getDocumentElement(); }
  NamespaceMap& namespaces() { return namespaces_; }

  /// The root's "groups:FloatingDarkMetadata" child, made and appended when there is none.
  xercesc::DOMElement& floatingContainer();
  /// The same, moved to the last place among the root's children.
  xercesc::DOMElement& lastFloatingContainer();

  /// To be called for every set element. If a dictionary gives a set the container's name, its element serves as the
  /// container, as a search of the document would find it.
  void noteSetElement(const wstring& qualifiedName);

 private:
  xercesc::DOMDocument& document_;
  NamespaceMap namespaces_;
  xercesc::DOMElement* floatingContainer_ = nullptr;
  bool nameIsTaken_ = false;
};

/// The first child element with a qualified name; null when there is none.
xercesc::DOMElement* findChildNamed(const xercesc::DOMElement& parent, std::u16string_view qualifiedName);

/// Sets an attribute with a qualified name in a namespace, replacing one of the same name.
void setAttribute(xercesc::DOMElement& element, std::u16string_view uri, std::u16string_view qualifiedName,
                  const wstring& value);

}  // namespace Vantor::XMLBuilder
