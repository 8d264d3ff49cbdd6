#include "Core/Types/AUID.h"

namespace Vantor::Types {

namespace {

/// Every label that SMPTE registers begins with these four octets (ST 298).
bool isUniversalLabel(const uint8* octets) {
  constexpr std::array<uint8, 4> kLabelStart = {0x06, 0x0e, 0x2b, 0x34};
  return std::memcmp(octets, kLabelStart.data(), kLabelStart.size()) == 0;
}

}  // namespace

wstring AUID::formatText(const uint8* octets, StringRepresentationEncodingType form) {
  if (form != kUrnForm) return KLV::dottedText(octets, kSize);
  return isUniversalLabel(octets) ? KLV::ulUrn(octets) : KLV::uuidUrn(octets);
}

bool AUID::parseText(std::u16string_view text, uint8* octets) {
  return KLV::parseDotted(text, octets, kSize) || KLV::parseUlUrn(text, octets) || KLV::parseUuidUrn(text, octets);
}

}  // namespace Vantor::Types
