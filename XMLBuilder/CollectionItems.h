#pragma once

#include "Core/Types/Collection.h"
#include "Core/Types/Identifiers.h"

namespace Vantor::XML2Partition {

/// Whether values of a type have no size but their own.
bool isVariableSize(Types::Identifiers::Identifier type);

/// Octets of padding that one collection may get: a short document must not ask for gigabytes that way.
constexpr uint64 kMostPadding = uint64{1} << 24;

/// Fills a collection, item by item.
class CollectionItems {
 public:
  explicit CollectionItems(Types::Collection& collection) : collection_(collection) {}

  /// @param item  null adds nothing. One without octets takes the room of the others.
  /// @throws InvalidLength for an item of another size than the others, and for too much room without octets.
  void append(auto_ptr<Types::SimpleDataType> item);

 private:
  Types::Collection& collection_;
  uint64 emptyItems_ = 0;
};

}  // namespace Vantor::XML2Partition
