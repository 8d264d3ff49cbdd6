#include "XMLBuilder/CollectionItems.h"

#include "Core/Platform/Raise.h"

namespace Vantor::XML2Partition {

bool isVariableSize(Types::Identifiers::Identifier type) {
  using namespace Types::Identifiers;
  return type == kDataStream || type == kISO7String || type == kUnknown || type == kUTF16String || type == kDataValue ||
         type == kISO8String;
}

void CollectionItems::append(auto_ptr<Types::SimpleDataType> item) {
  if (item != nullptr && item->encodedSize() == 0 && ++emptyItems_ * collection_.itemSize() > kMostPadding) {
    Exceptions::raise<Exceptions::InvalidLength>("{} items without octets cannot be padded to {} octets each",
                                                 emptyItems_, collection_.itemSize());
  }
  collection_.append(std::move(item));
}

}  // namespace Vantor::XML2Partition
