#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Core/Dictionary/Definition.h"

namespace Vantor {

/// The core type of that name that a property may have; `kNone` when there is none, or when properties cannot have it.
Types::Identifiers::Identifier propertyTypeNamed(std::string_view name);

/// Whether an enumeration may be over this type.
bool isEnumerable(Types::Identifiers::Identifier type);
/// Whether a value of such a type can be the number.
bool fitsInto(Types::Identifiers::Identifier type, int64 number);

/// Reads `UInt8`, `StrongReference(Track)`, `Grade`, `BatchOf(...)` or `ArrayOf(...)` of one of these. A name that is
/// no core type is taken for that of an enumeration. The result keeps parts of the text.
/// @return none when the text has another shape; `whyNot` is the reason then.
std::optional<PropertyType> parsePropertyType(std::string_view text, std::string& whyNot);

/// Writes what `parsePropertyType` reads.
std::string textOf(const PropertyType& type);

/// A static local tag as dictionaries have it: four hexadecimal digits in lower case, or '-' for none.
std::string tagText(uint16 tag);

}  // namespace Vantor
