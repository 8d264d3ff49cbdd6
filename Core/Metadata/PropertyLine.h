#pragma once

#include <optional>
#include <string_view>

#include "Core/Metadata/MetadataSet.h"
#include "Core/Metadata/PropertyText.h"

/// Values of properties on one line each, to be taken from one file to another.
namespace Vantor {

/// The text of `printProperty` as `MetadataSet::set` reads it back: texts that begin with a quote or with "0x[", and
/// those with control characters, stand in quotes; a text with a NUL within is its octets.
wstring printLine(const PropertyPlace& place, const Types::SimpleDataType& value);

/// A property of a set, whether the set has it or not.
struct HeldProperty {
  const MetaMetadata::MetaElement* definition;
  const Element* element;  ///< also one that was read as octets; null when the set has none
};

/// @param property  by any of its names. @throws InvalidFormat for a name of none, with the nearest ones.
HeldProperty heldProperty(const MetadataSet& set, std::string_view property);

/// The value on one line; octets that decode in no known form as "0x[D83D]". None where there is no value.
std::optional<wstring> lineOf(const MetadataSet& set, const HeldProperty& property);

}  // namespace Vantor
