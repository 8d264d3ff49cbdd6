#pragma once

#include "Core/Types/IdentifierType.h"

namespace Vantor::Types {

/// An extended unique material identifier, 64 octets (ST 330). Texts: dotted pairs, "urn:smpte:umid:...".
class UMID64 final : public IdentifierType<UMID64> {
 public:
  using IdentifierType::IdentifierType;

  static wstring formatText(const uint8* octets, StringRepresentationEncodingType form);
  static bool parseText(std::u16string_view text, uint8* octets);
};

}  // namespace Vantor::Types

template <>
struct std::hash<Vantor::Types::UMID64> : Vantor::Types::IdentifierHash {};
