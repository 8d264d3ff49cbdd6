#include "XMLBuilder/ReferencePointers.h"

#include <xercesc/dom/DOMAttr.hpp>

#include "XMLBuilder/ToXMLBaseTypeVisitor.h"
#include "XMLBuilder/Vocabulary.h"

namespace Vantor::XMLBuilder {

namespace {

void append(ExportDocument& document, xercesc::DOMElement& property, const QualifiedName& name,
            const Types::Reference& reference) {
  document.namespaces().insertIfUnbound(Vocabulary::kTypesURI, Vocabulary::kTypesPrefix);
  auto* pointer = document.document().createElementNS(name.uri.c_str(), name.name.c_str());
  property.appendChild(pointer);
  auto* target =
      document.document().createAttributeNS(Vocabulary::kTypesURI.data(), Vocabulary::kTargetInstance.data());
  pointer->setAttributeNodeNS(target);
  ToXMLBaseTypeVisitor writer(*target);
  reference.accept(writer);
}

}  // namespace

void appendPointer(ExportDocument& document, xercesc::DOMElement& property, const Types::Reference& reference,
                   const MetadataSet& target, std::size_t targets) {
  if (target.definition() == nullptr) return appendDangling(document, property, reference);
  const auto& uri = target.definition()->extensionAttribute(MetaMetadata::kXMLNamespaceURI);
  append(document, property, {referenceName(target, targets), uri}, reference);
}

void appendDangling(ExportDocument& document, xercesc::DOMElement& property, const Types::Reference& reference) {
  const QualifiedName name{wstring(Vocabulary::kDangling), document.namespaces().uriOf(Vocabulary::kRootPrefix)};
  append(document, property, name, reference);
}

}  // namespace Vantor::XMLBuilder
