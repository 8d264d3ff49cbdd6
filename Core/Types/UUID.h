#pragma once

#include "Core/Types/IdentifierType.h"

namespace Vantor::Types {

/// A universally unique identifier, 16 octets in network order (RFC 4122). Texts: dotted pairs, "urn:uuid:...".
class UUID final : public IdentifierType<UUID> {
 public:
  using IdentifierType::IdentifierType;

  static wstring formatText(const uint8* octets, StringRepresentationEncodingType form);
  static bool parseText(std::u16string_view text, uint8* octets);
};

}  // namespace Vantor::Types

template <>
struct std::hash<Vantor::Types::UUID> : Vantor::Types::IdentifierHash {};
