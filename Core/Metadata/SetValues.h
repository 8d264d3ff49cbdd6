#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "Core/Metadata/MetadataSet.h"
#include "Core/Types/UniversalLabel.h"

namespace Vantor {

/// @name Values of sets
/// A property that a set does not have, or that has no value, or one of another type, has none of these.
/// @{
const Types::SimpleDataType* valueOf(const MetadataSet& set, std::string_view property);
template <class Value>
const Value* valueOf(const MetadataSet& set, std::string_view property) {
  const auto* value = valueOf(set, property);
  return value == nullptr || value->identifier() != Value::kIdentifier ? nullptr : static_cast<const Value*>(value);
}
/// The value of any integer type, Booleans included.
std::optional<int64> integerOf(const Types::SimpleDataType& value);
std::optional<int64> integerOf(const MetadataSet& set, std::string_view property);
/// A label or another identifier of 16 octets.
std::optional<Types::UniversalLabel> labelOf(const MetadataSet& set, std::string_view property);
/// The same for all items of a collection.
std::vector<Types::UniversalLabel> labelsOf(const MetadataSet& set, std::string_view property);
/// @}

}  // namespace Vantor
