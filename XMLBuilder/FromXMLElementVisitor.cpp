#include "XMLBuilder/FromXMLElementVisitor.h"

#include "Core/MetaMetadata/MetaMetadataSet.h"
#include "XMLBuilder/FromXMLMetadataSetVisitor.h"
#include "XMLBuilder/ValueFromXML.h"
#include "XMLUtils/ChildLookup.h"

namespace Vantor::XML2Partition {

using Types::Identifiers::Identifier;
using xercesc::DOMElement;

namespace {

auto_ptr<Types::Reference> makeReferenceTo(Identifier type, const Types::UUID& target) {
  if (type == Types::Identifiers::kStrongReference) return std::make_unique<Types::StrongReference>(target);
  if (type == Types::Identifiers::kWeakReference) return std::make_unique<Types::WeakReference>(target);
  return nullptr;
}

template <class Collection>
auto_ptr<Types::Collection> makeCollection(int itemSize) {
  return std::make_unique<Collection>(itemSize);
}

}  // namespace

FromXMLElementVisitor::FromXMLElementVisitor(const xercesc::DOMNode& node, const MetaMetadata::MetaElement* definition,
                                             ReadingRules& rules)
    : node_(node),
      dataType_(definition == nullptr ? Types::Identifiers::kUnknown : definition->dataType()),
      rules_(rules) {
  const auto* collection = definition == nullptr ? nullptr : MetaMetadata::asCollection(*definition);
  if (collection != nullptr) dataSubType_ = collection->dataSubType();
}

void FromXMLElementVisitor::visit(SimpleElement& element) {
  auto value = createValueFromNode(dataType_, node_, rules_);
  if (value != nullptr) element.set(std::move(value), false);
}

void FromXMLElementVisitor::visit(ArrayElement& element) {
  rules_.readCollection(element, makeCollection<Types::Array>, dataSubType_, node_);
}

void FromXMLElementVisitor::visit(BatchElement& element) {
  rules_.readCollection(element, makeCollection<Types::Batch>, dataSubType_, node_);
}

template <class References>
void FromXMLElementVisitor::readReferences(References& element) {
  rules_.checkReferences(node_);
  const auto items = XMLUtils::childElements(node_);
  for (const DOMElement* item : items) readMember(element, *item);
  if (items.empty()) makeEmpty(element);
}

template <class References>
void FromXMLElementVisitor::readMember(References& element, const DOMElement& item) {
  if (rules_.isPointer(item, item.getNodeName())) {
    auto reference = buildReference(dataSubType_, item);
    if (reference != nullptr) element.appendUnverifiedReference(std::move(reference));
  } else if (const auto* set = buildNestedSet(item)) {
    element.append(set);
  }
}

/// Appending a member creates a collection of references; for an empty collection, the member is removed again.
template <class References>
void FromXMLElementVisitor::makeEmpty(References& element) {
  auto placeholder = makeReferenceTo(dataSubType_, Types::UUID());
  if (placeholder == nullptr) return;
  element.appendUnverifiedReference(std::move(placeholder));
  element.removeAt(0);
}

void FromXMLElementVisitor::visit(ReferenceElement& element) {
  const DOMElement* child = XMLUtils::firstChildElement(node_);
  rules_.checkReference(node_, child);
  if (child == nullptr) return;
  if (rules_.isPointer(*child, child->getLocalName())) {
    auto reference = buildReference(dataType_, *child);
    if (reference != nullptr) element.setUnverifiedReference(std::move(reference));
  } else if (const auto* set = buildNestedSet(*child)) {
    element.set(set);
  }
}

auto_ptr<Types::Reference> FromXMLElementVisitor::buildReference(Identifier type, const DOMElement& pointer) {
  const auto target = rules_.targetOf(pointer);
  return target ? makeReferenceTo(type, *target) : nullptr;
}

const MetadataSet* FromXMLElementVisitor::buildNestedSet(const DOMElement& element) {
  const auto* definition = rules_.findSet(element);
  return definition == nullptr ? nullptr : importSet(element, *definition, rules_);
}

}  // namespace Vantor::XML2Partition
