#include "Core/Types/NarrowStringType.h"

#include <algorithm>
#include <cstring>

namespace Vantor::Types {

NarrowString::NarrowString(const char* text) {
  const std::size_t length = text == nullptr ? 0 : std::strlen(text);
  requireEncodable(length);
  terminated_.reserve(length + 1);
  terminated_.assign(text, text + length);
  terminated_.push_back(0);
}

bool NarrowString::hasSameValue(const SimpleDataType& other) const {
  return std::strcmp(value(), static_cast<const NarrowString&>(other).value()) == 0;
}

bool NarrowString::readFrom(const uint8* bytes, std::size_t size, uint8 highest) {
  const uint8* const end = bytes + size;
  const uint8* const textEnd = std::find(bytes, end, uint8{0});
  if (std::any_of(bytes, textEnd, [highest](uint8 octet) { return octet > highest; })) return false;
  if (std::any_of(textEnd, end, [](uint8 octet) { return octet != 0; })) return false;
  Bytes terminated;
  terminated.reserve(size + 1);
  terminated.assign(bytes, end);
  terminated.push_back(0);
  terminated_.swap(terminated);
  return true;
}

}  // namespace Vantor::Types
