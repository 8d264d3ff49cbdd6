#include "XMLBuilder/ToXMLElementVisitor.h"

#include <xercesc/dom/DOMAttr.hpp>

#include "Core/KLV/Keys.h"
#include "Core/Types/Unknown.h"
#include "XMLBuilder/ExtensionElements.h"
#include "XMLBuilder/Names.h"
#include "XMLBuilder/ReferencePointers.h"
#include "XMLBuilder/TextFidelity.h"
#include "XMLBuilder/ToXMLBaseTypeVisitor.h"
#include "XMLBuilder/ToXMLMetaAttributeVisitor.h"
#include "XMLBuilder/ToXMLReferenceVisitor.h"
#include "XMLBuilder/Vocabulary.h"

namespace Vantor::XMLBuilder {

using xercesc::DOMElement;

bool ToXMLElementVisitor::needsBytes(const Element& element) const {
  return pass_.rules.isLossless && !isRestoredFromText(element);
}

Name ToXMLElementVisitor::nameOf(const MetaMetadata::MetaElement* definition) {
  auto name = enteredName(definition, pass_.document.namespaces());
  if (definition == nullptr) name.uri = groupsURI(pass_);
  return name;
}

DOMElement& ToXMLElementVisitor::createElement(const Name& name) {
  return *pass_.document.document().createElementNS(name.uri.c_str(), name.qualified().c_str());
}

void ToXMLElementVisitor::appendPropertyElement(DOMElement& property, const Element& element) {
  const bool isKnown = ToXMLMetaAttributeVisitor(element.metaAttribute()).listing() != nullptr;
  auto& parent = isKnown ? setElement_ : lastExtensionElements(pass_.document, setElement_);
  parent.appendChild(&property);
}

void ToXMLElementVisitor::writeValue(DOMElement& target, const Types::SimpleDataType& value) {
  ToXMLBaseTypeVisitor writer(target, pass_.document.namespaces());
  value.accept(writer);
}

void ToXMLElementVisitor::visit(const SimpleElement& element) {
  const auto* definition = element.metaAttribute().metaElement();
  const auto name = nameOf(definition);
  if (name.isAttribute()) return writeAttribute(element, name);
  if (needsBytes(element)) return writeBytes(element);
  auto& property = createElement(name);
  appendPropertyElement(property, element);
  if (definition == nullptr) markUnknown(property, element, pass_);
  if (element.value() != nullptr) writeValue(property, *element.value());
}

void ToXMLElementVisitor::writeAttribute(const SimpleElement& element, const Name& name) {
  auto* attribute = pass_.document.document().createAttributeNS(name.uri.c_str(), name.qualified().c_str());
  setElement_.setAttributeNodeNS(attribute);
  if (element.value() == nullptr) return;
  ToXMLBaseTypeVisitor writer(*attribute);
  element.value()->accept(writer);
}

void ToXMLElementVisitor::writeCollection(const CollectionElement& element) {
  const bool isShown =
      element.size() != 0 || pass_.rules.isLossless || ToXMLMetaAttributeVisitor(element.metaAttribute()).isRequired();
  if (!isShown) return;
  if (needsBytes(element)) return writeBytes(element);
  const auto name = nameOf(element.metaAttribute().metaElement());
  const auto itemName = qualify(name.prefix, Vocabulary::kItem);
  auto& property = createElement(name);
  appendPropertyElement(property, element);
  for (uint32 i = 0; i < element.size(); ++i) {
    auto* item = pass_.document.document().createElementNS(name.uri.c_str(), itemName.c_str());
    property.appendChild(item);
    writeValue(*item, element.value()->at(i));
  }
}

/// As an unknown property is written.
void ToXMLElementVisitor::writeBytes(const Element& element) {
  auto& property = createElement(nameOf(nullptr));
  lastExtensionElements(pass_.document, setElement_).appendChild(&property);
  markKnown(property, element, pass_);
  const auto* value = element.wireValue();
  if (value != nullptr) writeValue(property, Types::Unknown(value->rawBuffer(), value->encodedSize()));
}

void ToXMLElementVisitor::visit(const ReferenceElement& element) {
  if (element.isSkipped() || element.value() == nullptr) {
    if (pass_.rules.isLossless) writeBytes(element);
    return;
  }
  if (referenceProperty_ == nullptr) referenceProperty_ = &createElement(nameOf(element.metaAttribute().metaElement()));
  const bool isWritten = writeReference(*element.value(), *referenceProperty_);
  if (isWritten && referenceProperty_->getParentNode() == nullptr) appendPropertyElement(*referenceProperty_, element);
}

bool ToXMLElementVisitor::writeReference(const Types::Reference& reference, DOMElement& property) {
  const auto& targets = pass_.partition.findByInstanceUID(reference.target());
  if (targets.empty()) {
    appendPointer(pass_.document, property, reference);
  } else if (!pass_.rules.nestStrongReferences) {
    writeBeside(reference, targets, property);
  } else if (pass_.rules.excludeNonStructural && !KLV::isStructuralMetadataSet(targets.front()->key())) {
    return false;
  } else {
    ToXMLReferenceVisitor writer(targets, property, pass_);
    reference.accept(writer);
  }
  return true;
}

void ToXMLElementVisitor::writeBeside(const Types::Reference& reference, const PartitionMetadata::Sets& targets,
                                      DOMElement& property) {
  const MetadataSet& target = *targets.front();
  appendPointer(pass_.document, property, reference, &target, targets.size());
  const bool isStrong = reference.identifier() == Types::Identifiers::kStrongReference;
  const bool isExcluded = pass_.rules.excludeNonStructural && !KLV::isStructuralMetadataSet(target.key());
  if (target.definition() == nullptr || (isStrong && !isExcluded)) targets_.push_back(&target);
}

}  // namespace Vantor::XMLBuilder
