#include "OperationalPattern.h"

#include "Core/MXF/OperationalPattern.h"

namespace Vantor::Tool {

std::string operationalPatternName(const Types::UniversalLabel& label) {
  if (!MXF::isOperationalPattern(label)) return "unknown pattern";
  const uint8 items = label.octet(13);     // ST 377-1: 1 single item, 2 playlist, 3 edited items
  const uint8 packages = label.octet(14);  // 1 one package per item, 2 ganged, 3 alternate ones
  if (items == 0x10) return "OP-Atom";     // ST 390
  if (items > 0x10 && items < 0x80) return "specialized pattern";
  if (items < 1 || items > 3 || packages < 1 || packages > 3) return "unknown pattern";
  return {'O', 'P', static_cast<char>('0' + items), static_cast<char>('a' + packages - 1)};
}

}  // namespace Vantor::Tool
