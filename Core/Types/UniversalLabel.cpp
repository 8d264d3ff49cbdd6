#include "Core/Types/UniversalLabel.h"

namespace Vantor::Types {

wstring UniversalLabel::formatText(const uint8* octets, StringRepresentationEncodingType form) {
  return form == kUrnForm ? KLV::ulUrn(octets) : KLV::dottedText(octets, kSize);
}

bool UniversalLabel::parseText(std::u16string_view text, uint8* octets) {
  return KLV::parseDotted(text, octets, kSize) || KLV::parseUlUrn(text, octets);
}

}  // namespace Vantor::Types
