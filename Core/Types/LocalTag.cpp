#include "Core/Types/LocalTag.h"

namespace Vantor::Types {

wstring LocalTag::formatText(const uint8* octets, StringRepresentationEncodingType) {
  return KLV::dottedText(octets, kSize);
}

bool LocalTag::parseText(std::u16string_view text, uint8* octets) {
  if (text.size() != 2 * kSize) return KLV::parseDotted(text, octets, kSize);
  return KLV::parseDotted(wstring(text.substr(0, 2)) + u'.' + wstring(text.substr(2)), octets, kSize);
}

}  // namespace Vantor::Types
