#include "XMLBuilder/ToXMLElementVisitor.h"

#include <xercesc/dom/DOMAttr.hpp>

#include "Core/KLV/Keys.h"
#include "XMLBuilder/DarkMetadataSetWriter.h"
#include "XMLBuilder/ExtensionElements.h"
#include "XMLBuilder/Names.h"
#include "XMLBuilder/ReferencePointers.h"
#include "XMLBuilder/ToXMLBaseTypeVisitor.h"
#include "XMLBuilder/ToXMLMetaAttributeVisitor.h"
#include "XMLBuilder/ToXMLReferenceVisitor.h"
#include "XMLBuilder/Vocabulary.h"

namespace Vantor::XMLBuilder {

using xercesc::DOMElement;

void ToXMLElementVisitor::visit(const SimpleElement& element) {
  const ToXMLMetaAttributeVisitor attribute(element.metaAttribute());
  const auto name = propertyName(attribute.metaElement(), document_.namespaces());
  const auto& uri = propertyURI(name, attribute.metaElement(), document_.namespaces());
  if (name.isAttribute()) return writeAttribute(element, name.qualified(), name.uri);

  auto* property = document_.document().createElementNS(uri.c_str(), name.qualified().c_str());
  if (attribute.kind() != ToXMLMetaAttributeVisitor::Kind::kKnown) {
    return writeExtensionElement(document_, setElement_, *property, attribute, element.value(),
                                 partition_.partitionDictionary());
  }
  setElement_.appendChild(property);
  if (element.value() == nullptr) return;
  ToXMLBaseTypeVisitor writer(*property, document_.namespaces());
  element.value()->accept(writer);
}

void ToXMLElementVisitor::writeAttribute(const SimpleElement& element, const wstring& name, const wstring& uri) {
  auto* attribute = document_.document().createAttributeNS(uri.c_str(), name.c_str());
  setElement_.setAttributeNodeNS(attribute);
  if (element.value() == nullptr) return;
  ToXMLBaseTypeVisitor writer(*attribute);
  element.value()->accept(writer);
}

DOMElement& ToXMLElementVisitor::createPropertyElement(const Element& element) {
  const auto* definition = element.metaAttribute().metaElement();
  const auto name = propertyName(definition, document_.namespaces());
  const auto& uri = propertyURI(name, definition, document_.namespaces());
  return *document_.document().createElementNS(uri.c_str(), name.qualified().c_str());
}

void ToXMLElementVisitor::visit(const BatchElement& element) { writeCollection(element); }
void ToXMLElementVisitor::visit(const ArrayElement& element) { writeCollection(element); }

void ToXMLElementVisitor::writeCollection(const CollectionElement& element) {
  if (element.size() == 0) {
    if (ToXMLMetaAttributeVisitor(element.metaAttribute()).isRequired()) {
      setElement_.appendChild(&createPropertyElement(element));
    }
    return;
  }
  auto& property = createPropertyElement(element);
  setElement_.appendChild(&property);
  const auto name = propertyName(element.metaAttribute().metaElement(), document_.namespaces());
  const auto itemName = qualify(name.prefix, Vocabulary::kItem);
  for (uint32 i = 0; i < element.size(); ++i) writeItem(element.value()->at(i), itemName, name.uri, property);
}

void ToXMLElementVisitor::writeItem(const Types::SimpleDataType& item, const wstring& name, const wstring& uri,
                                    DOMElement& property) {
  auto* itemElement = document_.document().createElementNS(uri.c_str(), name.c_str());
  property.appendChild(itemElement);
  ToXMLBaseTypeVisitor writer(*itemElement, document_.namespaces());
  item.accept(writer);
}

void ToXMLElementVisitor::visit(const ReferenceElement& element) {
  if (element.isSkipped() || element.value() == nullptr) return;
  if (referenceProperty_ == nullptr) referenceProperty_ = &createPropertyElement(element);
  const bool isWritten = writeReference(*element.value(), *referenceProperty_);
  if (isWritten && referenceProperty_->getParentNode() == nullptr) setElement_.appendChild(referenceProperty_);
}

bool ToXMLElementVisitor::writeReference(const Types::Reference& reference, DOMElement& property) {
  const auto& targets = partition_.findByInstanceUID(reference.target());
  if (targets.empty()) {
    appendDangling(document_, property, reference);
    return true;
  }
  const bool isStructural = KLV::isStructuralMetadataSet(targets.front()->key());
  if (!options_.nestStrongReferences) {
    writeBeside(reference, targets, isStructural, property);
    return true;
  }
  if (!isStructural && options_.excludeNonStructural) return false;
  ToXMLReferenceVisitor writer(partition_, *targets.front(), property, options_.excludeNonStructural, document_,
                               written_);
  reference.accept(writer);
  return true;
}

void ToXMLElementVisitor::writeBeside(const Types::Reference& reference, const PartitionMetadata::Sets& targets,
                                      bool isStructural, DOMElement& property) {
  const MetadataSet& target = *targets.front();
  if (target.definition() == nullptr) {
    appendDangling(document_, property, reference);
    return writeDark(target);
  }
  const QualifiedName name{referenceName(target, targets.size()),
                           target.definition()->extensionAttribute(MetaMetadata::kXMLNamespaceURI)};
  appendPointer(document_, property, name, reference);
  const bool isStrong = reference.identifier() == Types::Identifiers::kStrongReference;
  if (!isStrong || (!isStructural && options_.excludeNonStructural)) return;
  ToXMLMetadataSetVisitor writer(*setElement_.getParentNode(), partition_, options_, document_, written_);
  target.accept(writer);
}

void ToXMLElementVisitor::writeDark(const MetadataSet& set) {
  auto& container = document_.lastFloatingContainer();
  if (const auto* group = dynamic_cast<const DarkParsedGroup*>(&set)) {
    writeDarkMetadataSet(document_, container, *group);
  } else {
    writeDarkMetadataSet(document_, container, set, partition_);
  }
}

}  // namespace Vantor::XMLBuilder
