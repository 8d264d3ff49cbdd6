#pragma once

#include "Core/Metadata/Element.h"
#include "Core/Types/Array.h"
#include "Core/Types/Batch.h"
#include "Core/Types/References.h"

namespace Vantor {

/// A property whose value is an array or a batch.
class CollectionElement : public Element {
 public:
  using Element::Element;

  /// The collection; null when the property has none.
  const Types::Collection* value() const { return collection_.get(); }
  /// The number of items; 0 without a collection.
  uint32 size() const { return collection_ == nullptr ? 0 : collection_->size(); }

  /// Takes a collection, with its items, and makes the property present.
  void set(auto_ptr<Types::Collection> collection);
  /// Appends an item; none (a null pointer) appends nothing. A property without a collection gets an empty one of the
  /// item type's size first.
  /// @throws InvalidLength when the item's size is not the collection's item size.
  void append(auto_ptr<Types::SimpleDataType> item);
  /// Removes the item at an index; the collection stays, even if empty.
  /// @throws InvalidLength when there is no such item.
  void removeAt(uint32 index);

  const Types::SimpleDataType* wireValue() const override { return collection_.get(); }

 protected:
  virtual auto_ptr<Types::Collection> makeCollection(int itemSize) const = 0;

  void appendReference(const MetadataSet* target);
  /// Visits each member as a reference.
  void acceptMembers(Metadata::Visitors::ElementVisitor& visitor) const;
  void appendMemberTargets(ReferenceKinds kinds, std::vector<Types::UUID>& targets) const;

 private:
  auto_ptr<Types::Collection> collection_;
};

/// What arrays and batches have in common; the value is a `Types::Array` or a `Types::Batch`.
template <class Derived, class Value>
class PlainCollectionElement : public CollectionElement {
 public:
  using CollectionElement::CollectionElement;
  void accept(Metadata::Visitors::ElementVisitor& visitor, bool, bool) const override {
    visitor.visit(static_cast<const Derived&>(*this));
  }
  void accept(Metadata::Visitors::NonConstElementVisitor& visitor) override {
    visitor.visit(static_cast<Derived&>(*this));
  }

 protected:
  auto_ptr<Types::Collection> makeCollection(int itemSize) const override { return std::make_unique<Value>(itemSize); }
};

/// A property whose value is an array, whose order counts.
class ArrayElement : public PlainCollectionElement<ArrayElement, Types::Array> {
 public:
  using PlainCollectionElement::PlainCollectionElement;
};

/// A property whose value is a batch, whose order is kept but does not count.
class BatchElement : public PlainCollectionElement<BatchElement, Types::Batch> {
 public:
  using PlainCollectionElement::PlainCollectionElement;
};

/// What arrays and batches of references have in common, beside what they are as plain collections.
template <class Derived, class Plain>
class ReferenceCollectionElement : public Plain {
 public:
  using Plain::append;
  using Plain::Plain;
  /// Appends a reference to a set. @throws InvalidFormat when there is no set (null), or it has no InstanceUID.
  void append(const MetadataSet* target) { this->appendReference(target); }
  void appendUnverifiedReference(auto_ptr<Types::Reference> reference) { Plain::append(std::move(reference)); }

  void accept(Metadata::Visitors::ElementVisitor& visitor, bool nestStrongReferences,
              bool excludeNonStructural) const override {
    visitor.visit(static_cast<const Derived&>(*this));
    if (this->size() == 0) return Plain::accept(visitor, nestStrongReferences, excludeNonStructural);
    this->acceptMembers(visitor);
  }
  void accept(Metadata::Visitors::NonConstElementVisitor& visitor) override {
    visitor.visit(static_cast<Derived&>(*this));
  }
  void appendTargets(ReferenceKinds kinds, std::vector<Types::UUID>& targets) const override {
    this->appendMemberTargets(kinds, targets);
  }
};

/// An array of strong or weak references.
class ReferenceArrayElement : public ReferenceCollectionElement<ReferenceArrayElement, ArrayElement> {
 public:
  using ReferenceCollectionElement::ReferenceCollectionElement;
};

/// A batch of strong or weak references.
class ReferenceBatchElement : public ReferenceCollectionElement<ReferenceBatchElement, BatchElement> {
 public:
  using ReferenceCollectionElement::ReferenceCollectionElement;
};

}  // namespace Vantor
