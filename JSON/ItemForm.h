#pragma once

#include "Core/Metadata/PropertyText.h"
#include "JSON/Value.h"

/// The JSON of values that are no collection, and of the items of collections.
namespace Vantor::JSON {

/// How values of a type stand in JSON.
struct ItemForm {
  Value (*write)(const PropertyPlace& place, const Types::SimpleDataType& item);
  /// @throws Refusal, and the exceptions of Core.
  auto_ptr<Types::SimpleDataType> (*read)(const PropertyPlace& place, Types::Identifiers::Identifier type,
                                          const Value& json);
};

/// Null for collections, and for kNone.
const ItemForm* itemForm(Types::Identifiers::Identifier type);

/// The item that a text is, as people write it in this property.
/// @param place  with its definition. @throws Exceptions::InvalidFormat.
auto_ptr<Types::SimpleDataType> itemFromText(const PropertyPlace& place, std::string_view text);

}  // namespace Vantor::JSON
