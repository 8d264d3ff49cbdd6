#include "XMLBuilder/ExportDocument.h"

#include "XMLBuilder/Vocabulary.h"

namespace Vantor::XMLBuilder {

using xercesc::DOMElement;
using xercesc::DOMNode;

DOMElement* findChildNamed(const DOMElement& parent, std::u16string_view qualifiedName) {
  for (DOMNode* child = parent.getFirstChild(); child != nullptr; child = child->getNextSibling()) {
    if (child->getNodeType() == DOMNode::ELEMENT_NODE && child->getNodeName() == qualifiedName) {
      return static_cast<DOMElement*>(child);
    }
  }
  return nullptr;
}

void setAttribute(DOMElement& element, std::u16string_view uri, std::u16string_view qualifiedName,
                  const wstring& value) {
  element.setAttributeNS(uri.data(), qualifiedName.data(), value.c_str());
}

DOMElement& ExportDocument::floatingContainer() {
  DOMElement* found = nameIsTaken_ ? findChildNamed(root(), Vocabulary::kFloatingContainer) : floatingContainer_;
  if (found != nullptr) return *found;
  floatingContainer_ = document_.createElementNS(Vocabulary::kGroupsURI.data(), Vocabulary::kFloatingContainer.data());
  root().appendChild(floatingContainer_);
  return *floatingContainer_;
}

DOMElement& ExportDocument::lastFloatingContainer() {
  DOMElement& container = floatingContainer();
  if (root().getLastChild() != &container) root().appendChild(&container);
  return container;
}

void ExportDocument::noteSetElement(const wstring& qualifiedName) {
  nameIsTaken_ = nameIsTaken_ || qualifiedName == Vocabulary::kFloatingContainer;
}

}  // namespace Vantor::XMLBuilder
