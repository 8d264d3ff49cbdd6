#pragma once

#include "Core/Platform/Containers.h"
#include "Core/Types/ValueType.h"

namespace Vantor::Types {

/// Items of one size, each on the wire as its own octets, after a 32-bit count and a 32-bit item size, both big-endian
/// (ST 377-1). The collection owns its items. It keeps its octets put together, so that `rawBuffer()` costs nothing.
class Collection : public SimpleDataType {
 public:
  const uint8* rawBuffer() const override { return octets_.data(); }
  /// Count and item size (8 octets) and all items.
  uint32 encodedSize() const override { return static_cast<uint32>(octets_.size()); }
  /// The item size.
  uint32 serializedSize() const override { return itemSize_; }

  /// Octets of one item; an empty collection keeps the size that it was made with or read with.
  uint32 itemSize() const { return itemSize_; }
  /// Count of items.
  uint32 size() const { return static_cast<uint32>(items_.size()); }

  /// @throws InvalidLength when there is no such item.
  const SimpleDataType& at(uint32 index) const;
  /// Adds an item at the end; null adds nothing. The first item fixes an item size of 0. An item of no octets, such as
  /// an empty text, fits every collection: `at` gives it as it is, and on the wire zero octets fill its place.
  /// @throws InvalidLength when the item has octets and not `itemSize()` of them, or when the collection would write
  /// 2^32 octets or more; the collection stays as it was.
  void append(auto_ptr<SimpleDataType> item);
  /// The item size stays, even when no item is left.
  /// @throws InvalidLength when there is no such item.
  void removeAt(uint32 index);

 protected:
  /// @throws InvalidLength when `itemSize` is negative.
  explicit Collection(int itemSize);
  Collection(const Collection& other);
  Collection& operator=(const Collection& other);
  bool hasSameValue(const SimpleDataType& other) const override;

  /// Reads the items as values of `itemType`. Returns false when the octets are not exactly what this collection would
  /// write: count times item size is not the number of octets that follow, an item does not decode, or there are items
  /// of no octets, whose number nothing bounds. The collection must be empty; after false it can only be destroyed.
  bool readFrom(Identifiers::Identifier itemType, const uint8* bytes, std::size_t size);

 private:
  void writeHeader();

  Templates::vector<auto_ptr<SimpleDataType>> items_;
  uint32 itemSize_;
  Bytes octets_;
};

/// The constructors of both kinds of collection.
template <class Derived>
class CollectionType : public ValueType<Derived, Collection> {
 public:
  /// @param itemSize  octets of one item; 0 leaves it to the first item.
  /// @throws InvalidLength when `itemSize` is negative.
  explicit CollectionType(int itemSize = 0) : ValueType<Derived, Collection>(itemSize) {}

  /// Reads the items as values of `itemType`; null when the octets are not exactly what such a collection writes.
  static auto_ptr<Derived> decode(Identifiers::Identifier itemType, const uint8* bytes, std::size_t size) {
    auto value = std::make_unique<Derived>();
    return static_cast<CollectionType&>(*value).readFrom(itemType, bytes, size) ? std::move(value) : nullptr;
  }
  /// The octets do not show the type of the items, which become `Unknown` values.
  static auto_ptr<Derived> decode(const uint8* bytes, std::size_t size) {
    return decode(Identifiers::kUnknown, bytes, size);
  }
};

}  // namespace Vantor::Types
