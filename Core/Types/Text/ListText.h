#pragma once

#include <functional>

#include "Core/Types/Collection.h"
#include "Core/Types/Text/TypeText.h"

namespace Vantor::Types {

using ItemPrinter = std::function<wstring(const SimpleDataType& item)>;
using ItemParser = std::function<auto_ptr<SimpleDataType>(std::u16string_view text)>;

/// "[a, b]", with items of text types in quotes.
/// @param print  for items of other types; empty for `printValue`.
wstring printList(const Collection& list, const ItemPrinter& print = {});

/// The collection that a text is: "[a, b]", or "[]" for none. Items may stand without quotes where no text needs them;
/// commas in braces belong to the item. Shorter texts get NULs up to the size of the longest.
/// @param arrayOrBatch  kArray or kBatch.
/// @param parse         for items of other types than texts; throws for what is none. Empty for `parseValue`.
/// @param examples      of items, as in a `TypeText`; empty for those of the type.
/// @throws InvalidFormat with what the list takes, and for items that are not of one size on the wire.
auto_ptr<SimpleDataType> parseList(Identifiers::Identifier arrayOrBatch, Identifiers::Identifier itemType,
                                   std::u16string_view text, const ItemParser& parse = {},
                                   std::string_view examples = {});

/// The collection of these items; shorter texts get NULs up to the size of the longest.
/// @param items  of this type. @throws InvalidFormat when they are not of one size on the wire.
auto_ptr<SimpleDataType> listOf(Identifiers::Identifier arrayOrBatch, Identifiers::Identifier itemType,
                                Templates::vector<auto_ptr<SimpleDataType>> items);

}  // namespace Vantor::Types
