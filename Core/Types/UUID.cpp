#include "Core/Types/UUID.h"

namespace Vantor::Types {

wstring UUID::formatText(const uint8* octets, StringRepresentationEncodingType form) {
  return form == kUrnForm ? KLV::uuidUrn(octets) : KLV::dottedText(octets, kSize);
}

bool UUID::parseText(std::u16string_view text, uint8* octets) {
  return KLV::parseDotted(text, octets, kSize) || KLV::parseUuidUrn(text, octets);
}

}  // namespace Vantor::Types
