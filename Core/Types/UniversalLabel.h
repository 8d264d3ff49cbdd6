#pragma once

#include "Core/KLV/Key.h"
#include "Core/Types/IdentifierType.h"

namespace Vantor::Types {

/// A SMPTE universal label, 16 octets (ST 298, ST 336). Texts: dotted pairs, "urn:smpte:ul:...".
class UniversalLabel final : public IdentifierType<UniversalLabel> {
 public:
  using IdentifierType::IdentifierType;
  explicit UniversalLabel(const KLV::Key& key) : IdentifierType(key.rawBuffer()) {}

  KLV::Key key() const { return KLV::Key(octets_); }

  static wstring formatText(const uint8* octets, StringRepresentationEncodingType form);
  static bool parseText(std::u16string_view text, uint8* octets);
};

}  // namespace Vantor::Types

template <>
struct std::hash<Vantor::Types::UniversalLabel> : Vantor::Types::IdentifierHash {};
