#include "XMLBuilder/ExtensionElements.h"

#include "Core/Platform/Exceptions.h"
#include "Core/Types/SimpleDataType.h"
#include "XMLBuilder/ToXMLBaseTypeVisitor.h"
#include "XMLBuilder/Vocabulary.h"

namespace Vantor::XMLBuilder {

namespace {

using xercesc::DOMElement;

DOMElement& extensionElements(ExportDocument& document, DOMElement& set) {
  if (DOMElement* found = findChildNamed(set, Vocabulary::kExtensionElements)) return *found;
  // Readers look for the container only where the prefix is declared.
  document.namespaces().insertIfUnbound(Vocabulary::kGroupsURI, Vocabulary::kGroupsPrefix);
  return *document.document().createElementNS(Vocabulary::kGroupsURI.data(), Vocabulary::kExtensionElements.data());
}

void markUniversalLabel(DOMElement& property, const wstring& uri, const Types::LocalTag& tag,
                        const PartitionDictionary& tags) {
  try {
    setAttribute(property, uri, Vocabulary::kUniversalLabel, tags.find(tag).toString(kDottedForm));
  } catch (const Exceptions::NotFoundInPrimer&) {
    // The tag means nothing outside this file then, and the value alone is kept.
  }
}

void mark(DOMElement& property, const wstring& uri, const Types::LocalTag& tag, const PartitionDictionary& tags) {
  if (!tag.isStaticLocalTag()) return markUniversalLabel(property, uri, tag, tags);
  setAttribute(property, uri, Vocabulary::kStaticLocalTag, tag.toString(kDottedForm));
}

}  // namespace

void writeExtensionElement(ExportDocument& document, DOMElement& set, DOMElement& property,
                           const ToXMLMetaAttributeVisitor& attribute, const Types::SimpleDataType* value,
                           const PartitionDictionary& tags) {
  DOMElement& container = extensionElements(document, set);
  if (attribute.metaElement() == nullptr) {
    mark(property, document.namespaces().uriOf(Vocabulary::kGroupsPrefix),
         Types::LocalTag(attribute.localTag(), kDottedForm), tags);
  }
  container.appendChild(&property);
  if (value != nullptr) {
    ToXMLBaseTypeVisitor writer(property, document.namespaces());
    value->accept(writer);
  }
  set.appendChild(&container);
}

}  // namespace Vantor::XMLBuilder
