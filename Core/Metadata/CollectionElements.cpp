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

void CollectionElement::appendReference(const MetadataSet* target) { append(makeReference(itemType(*this), target)); }

void CollectionElement::acceptMembers(Metadata::Visitors::ElementVisitor& visitor) const {
  for (uint32 i = 0; i < size(); ++i) {
    const auto* member = memberAt(*this, i);
    if (member != nullptr) visitor.visit(ReferenceElement(metaAttribute(), *member));
  }
}

void CollectionElement::appendMemberTargets(ReferenceKinds kinds, std::vector<Types::UUID>& targets) const {
  for (uint32 i = 0; i < size(); ++i) {
    const auto* member = memberAt(*this, i);
    if (member != nullptr && kinds.include(member->identifier())) targets.push_back(member->target());
  }
}

}  // namespace Vantor
