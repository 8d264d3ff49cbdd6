#include "Core/Types/FinalNULs.h"

#include "Core/Types/Factories.h"

namespace Vantor::Types {

namespace {

/// Octets of a code unit; 0 for a value that is no text.
std::size_t unitOf(const SimpleDataType& value) {
  switch (value.identifier()) {
    case Identifiers::kUTF16String:
      return 2;
    case Identifiers::kUTF8String:
    case Identifiers::kISO7String:
    case Identifiers::kISO8String:
      return 1;
    default:
      return 0;
  }
}

}  // namespace

std::size_t finalNULsOf(const SimpleDataType& value) {
  const auto unit = unitOf(value);
  if (unit == 0) return 0;
  const uint8* octets = value.rawBuffer();
  std::size_t end = value.encodedSize();
  while (end >= unit && octets[end - 1] == 0 && octets[end - unit] == 0) end -= unit;
  return (value.encodedSize() - end) / unit;
}

auto_ptr<SimpleDataType> withFinalNULs(auto_ptr<SimpleDataType> value, std::size_t count) {
  const auto unit = value == nullptr || count == 0 ? 0 : unitOf(*value);
  if (unit == 0 || finalNULsOf(*value) != 0) return value;
  Bytes octets(value->rawBuffer(), value->rawBuffer() + value->encodedSize());
  octets.resize(octets.size() + count * unit);
  return Factories::fromBytes(value->identifier(), octets.data(), octets.size());
}

}  // namespace Vantor::Types
