#include "Core/MXF/OperationalPattern.h"

#include <algorithm>
#include <array>

namespace Vantor::MXF {

bool isOperationalPattern(const Types::UniversalLabel& label) {
  constexpr std::array<uint8, 12> kStart = {0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x00, 0x0d, 0x01, 0x02, 0x01};
  const uint8* octets = label.rawBuffer();
  return std::equal(octets, octets + 7, kStart.begin()) && std::equal(octets + 8, octets + 12, kStart.begin() + 8);
}

bool hasInternalEssence(const Types::UniversalLabel& pattern) {
  constexpr uint8 kLastGeneral = 3;      // octet 13 of the patterns 1a to 3c
  constexpr uint8 kExternalEssence = 2;  // of the qualifiers in octet 15
  const bool isGeneral = isOperationalPattern(pattern) && pattern.octet(13) >= 1 && pattern.octet(13) <= kLastGeneral;
  return isGeneral && (pattern.octet(15) & kExternalEssence) == 0;
}

}  // namespace Vantor::MXF
