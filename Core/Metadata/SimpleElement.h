#pragma once

#include "Core/Metadata/Element.h"

namespace Vantor {

/// A property with one value that is neither a collection nor a reference by the dictionary.
class SimpleElement : public Element {
 public:
  /// @param owner  notified of changes, so that the partition's index follows an InstanceUID; may be null.
  explicit SimpleElement(AttributeHandle attribute, MetadataSet* owner = nullptr)
      : Element(std::move(attribute)), owner_(owner) {}

  /// The value; null when the property has none. Valid until the next `set`.
  const Types::SimpleDataType* value() const { return value_.get(); }

  /// Takes a value and makes the property present.
  /// @param checkType  whether to refuse a value whose type is not the definition's.
  /// @throws InvalidFormat (checkType only); the property then keeps its value.
  void set(auto_ptr<Types::SimpleDataType> value, bool checkType);

  void accept(Metadata::Visitors::ElementVisitor& visitor, bool nestStrongReferences,
              bool excludeNonStructural) const override;
  void accept(Metadata::Visitors::NonConstElementVisitor& visitor) override;
  const Types::SimpleDataType* wireValue() const override { return value_.get(); }

 private:
  MetadataSet* owner_;
  auto_ptr<Types::SimpleDataType> value_;
};

}  // namespace Vantor
