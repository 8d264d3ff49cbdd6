#include "Core/Metadata/SetValues.h"

#include "Core/Types/Collection.h"

namespace Vantor {

namespace {

using namespace Types::Identifiers;

bool isUnsigned(Identifier type) {
  return type == kUInt8 || type == kUInt16 || type == kUInt32 || type == kUInt64 || type == kBoolean ||
         type == kSignalStandard || type == kOrientation;
}
bool isSigned(Identifier type) {
  return type == kInt8 || type == kInt16 || type == kInt32 || type == kInt64 || type == kLength || type == kPosition;
}

std::optional<Types::UniversalLabel> labelIn(const Types::SimpleDataType& value) {
  const auto type = value.identifier();
  if (type != kUniversalLabel && type != kAUID && type != kUUID) return std::nullopt;
  return Types::UniversalLabel(value.rawBuffer());
}

}  // namespace

const Types::SimpleDataType* valueOf(const MetadataSet& set, std::string_view property) {
  const auto* element = set.find(property);
  return element == nullptr || !element->isPresent() ? nullptr : element->wireValue();
}

std::optional<int64> integerOf(const Types::SimpleDataType& value) {
  const bool hasSign = isSigned(value.identifier());
  if (!hasSign && !isUnsigned(value.identifier())) return std::nullopt;
  const uint8* octets = value.rawBuffer();
  uint64 number = hasSign && (octets[0] & 0x80) != 0 ? ~uint64{0} : 0;
  for (uint32 i = 0; i < value.encodedSize(); ++i) number = number << 8 | octets[i];
  return static_cast<int64>(number);
}

std::optional<int64> integerOf(const MetadataSet& set, std::string_view property) {
  const auto* value = valueOf(set, property);
  return value == nullptr ? std::nullopt : integerOf(*value);
}

std::optional<Types::UniversalLabel> labelOf(const MetadataSet& set, std::string_view property) {
  const auto* value = valueOf(set, property);
  return value == nullptr ? std::nullopt : labelIn(*value);
}

std::vector<Types::UniversalLabel> labelsOf(const MetadataSet& set, std::string_view property) {
  std::vector<Types::UniversalLabel> labels;
  const auto* value = valueOf(set, property);
  if (value == nullptr || (value->identifier() != kArray && value->identifier() != kBatch)) return labels;
  const auto& collection = static_cast<const Types::Collection&>(*value);
  for (uint32 i = 0; i < collection.size(); ++i) {
    if (const auto label = labelIn(collection.at(i))) labels.push_back(*label);
  }
  return labels;
}

}  // namespace Vantor
