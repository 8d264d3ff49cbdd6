#pragma once

#include "Core/Types/Collection.h"
#include "Core/Types/Identifiers.h"

namespace Vantor::XML2Partition {

/// Whether values of a type vary in size.
bool isVariableSize(Types::Identifiers::Identifier type);

/// The most octets of padding in one collection, so that a short document cannot demand gigabytes.
constexpr uint64 kMostPadding = uint64{1} << 24;

/// Fills a collection, item by item.
class CollectionItems {
 public:
  explicit CollectionItems(Types::Collection& collection) : collection_(collection) {}

  /// @param item  null adds nothing. An item without octets is padded to the size of the others.
  /// @throws InvalidLength for an item that differs in size from the others, and for too much padding.
  void append(auto_ptr<Types::SimpleDataType> item);

 private:
  Types::Collection& collection_;
  uint64 emptyItems_ = 0;
};

}  // namespace Vantor::XML2Partition
