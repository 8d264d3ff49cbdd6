#pragma once

#include "Core/Types/IdentifierType.h"

namespace Vantor::Types {

/// A basic unique material identifier, 32 octets (ST 330). Texts: dotted pairs, "urn:smpte:umid:...".
class UMID32 final : public IdentifierType<UMID32> {
 public:
  using IdentifierType::IdentifierType;

  static wstring formatText(const uint8* octets, StringRepresentationEncodingType form);
  static bool parseText(std::u16string_view text, uint8* octets);
};

}  // namespace Vantor::Types

template <>
struct std::hash<Vantor::Types::UMID32> : Vantor::Types::IdentifierHash {};
