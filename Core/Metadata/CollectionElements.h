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

 private:
  auto_ptr<Types::Collection> collection_;
};

/// A property whose value is an array, whose order counts.
class ArrayElement : public CollectionElement {
 public:
  using CollectionElement::CollectionElement;
  void accept(Metadata::Visitors::ElementVisitor& visitor, bool nestStrongReferences,
              bool excludeNonStructural) const override;
  void accept(Metadata::Visitors::NonConstElementVisitor& visitor) override;

 protected:
  auto_ptr<Types::Collection> makeCollection(int itemSize) const override;
};

/// A property whose value is a batch, whose order is kept but does not count.
class BatchElement : public CollectionElement {
 public:
  using CollectionElement::CollectionElement;
  void accept(Metadata::Visitors::ElementVisitor& visitor, bool nestStrongReferences,
              bool excludeNonStructural) const override;
  void accept(Metadata::Visitors::NonConstElementVisitor& visitor) override;

 protected:
  auto_ptr<Types::Collection> makeCollection(int itemSize) const override;
};

/// An array of strong or weak references.
class ReferenceArrayElement : public ArrayElement {
 public:
  using ArrayElement::append;
  using ArrayElement::ArrayElement;
  /// Appends a reference to a set. @throws InvalidFormat when there is no set (null), or it has no InstanceUID.
  void append(const MetadataSet* target);
  void appendUnverifiedReference(auto_ptr<Types::Reference> reference);

  void accept(Metadata::Visitors::ElementVisitor& visitor, bool nestStrongReferences,
              bool excludeNonStructural) const override;
  void accept(Metadata::Visitors::NonConstElementVisitor& visitor) override;
  void appendTargets(ReferenceKinds kinds, std::vector<Types::UUID>& targets) const override;
};

/// A batch of strong or weak references.
class ReferenceBatchElement : public BatchElement {
 public:
  using BatchElement::append;
  using BatchElement::BatchElement;
  /// Appends a reference to a set. @throws InvalidFormat when there is no set (null), or it has no InstanceUID.
  void append(const MetadataSet* target);
  void appendUnverifiedReference(auto_ptr<Types::Reference> reference);

  void accept(Metadata::Visitors::ElementVisitor& visitor, bool nestStrongReferences,
              bool excludeNonStructural) const override;
  void accept(Metadata::Visitors::NonConstElementVisitor& visitor) override;
  void appendTargets(ReferenceKinds kinds, std::vector<Types::UUID>& targets) const override;
};

}  // namespace Vantor
