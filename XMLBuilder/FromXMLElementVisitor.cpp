#include "XMLBuilder/FromXMLElementVisitor.h"

#include "Core/MetaMetadata/MetaMetadataSet.h"
#include "XMLBuilder/FromXMLMetadataSetVisitor.h"
#include "XMLBuilder/ValueFromXML.h"
#include "XMLUtils/ChildLookup.h"

namespace Vantor::XML2Partition {

using Types::Identifiers::Identifier;
using xercesc::DOMElement;

namespace {

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
  rules_.checkReferences(node_, false);
  const auto items = XMLUtils::childElements(node_);
  if (items.empty()) element.appendUnverifiedReference(nullptr);  // makes an empty collection
  for (const DOMElement* item : items) {
    if (rules_.isPointer(*item, item->getNodeName())) {
      auto reference = buildReference(dataSubType_, *item);
      if (reference != nullptr) element.appendUnverifiedReference(std::move(reference));
    } else if (const auto* set = buildNestedSet(*item)) {
      element.append(set);
    }
  }
}

void FromXMLElementVisitor::visit(ReferenceElement& element) {
  rules_.checkReferences(node_, true);
  const DOMElement* child = XMLUtils::firstChildElement(node_);
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
  if (!target) return nullptr;
  if (type == Types::Identifiers::kStrongReference) return std::make_unique<Types::StrongReference>(*target);
  return std::make_unique<Types::WeakReference>(*target);
}

const MetadataSet* FromXMLElementVisitor::buildNestedSet(const DOMElement& element) {
  const auto* definition = rules_.findSet(element);
  return definition == nullptr ? nullptr : importSet(element, *definition, rules_);
}

}  // namespace Vantor::XML2Partition
