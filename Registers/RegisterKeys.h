#pragma once

#include "Core/KLV/Key.h"
#include "Core/Platform/Types.h"

/// Keys of the SMPTE registers from their last eight octets, in version 1 of the register. Compare them with
/// `KLV::Key::matches`, which ignores the version.
namespace Vantor::RegisterKeys {

constexpr KLV::Key key(uint8 category, uint8 registry, uint64 tail) {
  const auto octet = [tail](int place) { return static_cast<uint8>(tail >> (56 - 8 * place)); };
  return KLV::Key({0x06, 0x0e, 0x2b, 0x34, category, registry, 0x01, 0x01, octet(0), octet(1), octet(2), octet(3),
                   octet(4), octet(5), octet(6), octet(7)});
}

constexpr KLV::Key element(uint64 tail) { return key(0x01, 0x01, tail); }
constexpr KLV::Key type(uint64 tail) { return key(0x01, 0x04, tail); }
constexpr KLV::Key group(uint64 tail) { return key(0x02, 0x7f, tail); }

inline constexpr KLV::Key kInterchangeObject = group(0x0d01010101010100);

/// Whether the set is DefinitionObject or MetaDefinition (ST 395), from which all sets inherit that have an identifier
/// of their own, by which weak references name them.
inline bool isDefinitionRoot(const KLV::Key& set) {
  return group(0x0d01010101011a00).matches(set) || group(0x0d01010102240000).matches(set);
}

}  // namespace Vantor::RegisterKeys
