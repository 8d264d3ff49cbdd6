#include "Core/MXF/OperationalPattern.h"

#include <algorithm>
#include <array>

namespace Vantor::MXF {

bool isOperationalPattern(const Types::UniversalLabel& label) {
  constexpr std::array<uint8, 12> kStart = {0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x00, 0x0d, 0x01, 0x02, 0x01};
  const uint8* octets = label.rawBuffer();
  return std::equal(octets, octets + 7, kStart.begin()) && std::equal(octets + 8, octets + 12, kStart.begin() + 8);
}

std::string operationalPatternName(const Types::UniversalLabel& label) {
  if (!isOperationalPattern(label)) return "unknown pattern";
  const uint8 items = label.octet(13);     // ST 377-1: 1 single item, 2 playlist, 3 edited items
  const uint8 packages = label.octet(14);  // 1 one package per item, 2 ganged, 3 alternate ones
  if (items == 0x10) return "OP-Atom";     // ST 390
  if (items > 0x10 && items < 0x80) return "specialized pattern";
  if (items < 1 || items > 3 || packages < 1 || packages > 3) return "unknown pattern";
  return {'O', 'P', static_cast<char>('0' + items), static_cast<char>('a' + packages - 1)};
}

bool hasInternalEssence(const Types::UniversalLabel& pattern) {
  constexpr uint8 kLastGeneral = 3;      // octet 13 of the patterns 1a to 3c
  constexpr uint8 kExternalEssence = 2;  // of the qualifiers in octet 15
  const bool isGeneral = isOperationalPattern(pattern) && pattern.octet(13) >= 1 && pattern.octet(13) <= kLastGeneral;
  return isGeneral && (pattern.octet(15) & kExternalEssence) == 0;
}

}  // namespace Vantor::MXF
