#pragma once

#include "Core/Types/IdentifierType.h"

namespace Vantor::Types {

/// 16 octets that hold either a universal label or a UUID (ST 377-1). Texts: dotted pairs; "urn:smpte:ul:..." when the
/// octets begin 06.0e.2b.34, as labels do, else "urn:uuid:...".
class AUID final : public IdentifierType<AUID> {
 public:
  using IdentifierType::IdentifierType;

  static wstring formatText(const uint8* octets, StringRepresentationEncodingType form);
  static bool parseText(std::u16string_view text, uint8* octets);
};

}  // namespace Vantor::Types

template <>
struct std::hash<Vantor::Types::AUID> : Vantor::Types::IdentifierHash {};
