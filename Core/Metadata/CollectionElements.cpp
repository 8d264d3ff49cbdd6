#include "Core/Metadata/CollectionElements.h"

#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Metadata/MetadataSet.h"
#include "Core/Metadata/ReferenceElement.h"
#include "Core/Platform/Raise.h"

namespace Vantor {

namespace {

Types::Identifiers::Identifier itemType(const Element& element) {
  const auto* definition = element.metaAttribute().metaElement();
  const auto* collection = definition == nullptr ? nullptr : MetaMetadata::asCollection(*definition);
  return collection == nullptr ? Types::Identifiers::kNone : collection->dataSubType();
}

/// A member as a reference; null for an item of another type.
const Types::Reference* memberAt(const CollectionElement& element, uint32 index) {
  const auto& item = element.value()->at(index);
  const bool isReference = item.identifier() == Types::Identifiers::kStrongReference ||
                           item.identifier() == Types::Identifiers::kWeakReference;
  return isReference ? static_cast<const Types::Reference*>(&item) : nullptr;
}

/// Visits each member as a reference; an empty collection as a plain one.
template <class Plain>
void acceptMembers(const Plain& element, Metadata::Visitors::ElementVisitor& visitor) {
  if (element.size() == 0) return visitor.visit(element);
  for (uint32 i = 0; i < element.size(); ++i) {
    const auto* member = memberAt(element, i);
    if (member != nullptr) visitor.visit(ReferenceElement(element.metaAttribute(), *member));
  }
}

void appendMemberTargets(const CollectionElement& element, ReferenceKinds kinds, std::vector<Types::UUID>& targets) {
  for (uint32 i = 0; i < element.size(); ++i) {
    const auto* member = memberAt(element, i);
    if (member != nullptr && kinds.include(member->identifier())) targets.push_back(member->target());
  }
}

}  // namespace

void CollectionElement::set(auto_ptr<Types::Collection> collection) {
  collection_ = std::move(collection);
  markPresent();
}

void CollectionElement::append(auto_ptr<Types::SimpleDataType> item) {
  if (collection_ == nullptr) {
    set(makeCollection(static_cast<int>(Types::Identifiers::typeSize(itemType(*this)))));
  }
  if (item != nullptr) collection_->append(std::move(item));
}

void CollectionElement::removeAt(uint32 index) {
  if (index >= size()) {
    Exceptions::raise<Exceptions::InvalidLength>("there is no item {} to remove; the collection has {}", index, size());
  }
  collection_->removeAt(index);
}

void ArrayElement::accept(Metadata::Visitors::ElementVisitor& visitor, bool, bool) const { visitor.visit(*this); }
void ArrayElement::accept(Metadata::Visitors::NonConstElementVisitor& visitor) { visitor.visit(*this); }
auto_ptr<Types::Collection> ArrayElement::makeCollection(int itemSize) const {
  return std::make_unique<Types::Array>(itemSize);
}

void BatchElement::accept(Metadata::Visitors::ElementVisitor& visitor, bool, bool) const { visitor.visit(*this); }
void BatchElement::accept(Metadata::Visitors::NonConstElementVisitor& visitor) { visitor.visit(*this); }
auto_ptr<Types::Collection> BatchElement::makeCollection(int itemSize) const {
  return std::make_unique<Types::Batch>(itemSize);
}

void ReferenceArrayElement::append(const MetadataSet* target) {
  ArrayElement::append(makeReference(itemType(*this), target));
}
void ReferenceArrayElement::appendUnverifiedReference(auto_ptr<Types::Reference> reference) {
  ArrayElement::append(std::move(reference));
}
void ReferenceArrayElement::accept(Metadata::Visitors::ElementVisitor& visitor, bool, bool) const {
  visitor.visit(*this);
  acceptMembers<ArrayElement>(*this, visitor);
}
void ReferenceArrayElement::accept(Metadata::Visitors::NonConstElementVisitor& visitor) { visitor.visit(*this); }
void ReferenceArrayElement::appendTargets(ReferenceKinds kinds, std::vector<Types::UUID>& targets) const {
  appendMemberTargets(*this, kinds, targets);
}

void ReferenceBatchElement::append(const MetadataSet* target) {
  BatchElement::append(makeReference(itemType(*this), target));
}
void ReferenceBatchElement::appendUnverifiedReference(auto_ptr<Types::Reference> reference) {
  BatchElement::append(std::move(reference));
}
void ReferenceBatchElement::accept(Metadata::Visitors::ElementVisitor& visitor, bool, bool) const {
  visitor.visit(*this);
  acceptMembers<BatchElement>(*this, visitor);
}
void ReferenceBatchElement::accept(Metadata::Visitors::NonConstElementVisitor& visitor) { visitor.visit(*this); }
void ReferenceBatchElement::appendTargets(ReferenceKinds kinds, std::vector<Types::UUID>& targets) const {
  appendMemberTargets(*this, kinds, targets);
}

}  // namespace Vantor
