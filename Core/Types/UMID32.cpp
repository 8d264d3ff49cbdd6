#include "Core/Types/UMID32.h"

namespace Vantor::Types {

wstring UMID32::formatText(const uint8* octets, StringRepresentationEncodingType form) {
  return form == kUrnForm ? KLV::umidUrn(octets, kSize) : KLV::dottedText(octets, kSize);
}

bool UMID32::parseText(std::u16string_view text, uint8* octets) {
  return KLV::parseDotted(text, octets, kSize) || KLV::parseUmidUrn(text, octets, kSize);
}

}  // namespace Vantor::Types
