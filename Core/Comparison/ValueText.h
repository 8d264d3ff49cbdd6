#pragma once

#include <string>

#include "Core/Metadata/PropertyText.h"
#include "Core/Types/SimpleDataType.h"

namespace Vantor {

/// A value on one line, for messages, as people write it (Core/Metadata/PropertyText.h), but texts in quotes. UTF-8
/// without control characters.
///
/// Long values are cut and followed by their size, so two different values may have one text here. What is not cut is
/// read back by `MetadataSet::set` as the same octets.
std::string valueText(const PropertyPlace& place, const Types::SimpleDataType& value);
std::string valueText(const Types::SimpleDataType& value);
/// The value of a property of a set, of one that did not decode the form that files have (Core/Metadata/UnreadValue.h).
/// "no value" where it has none.
std::string valueText(const MetadataSet& set, const Element& element);
/// The same for octets.
std::string octetsText(const uint8* octets, std::size_t size);

}  // namespace Vantor
