#pragma once

#include "Core/Types/ByteString.h"
#include "Core/Types/DataStream.h"

namespace Vantor::Types {

/// The default coding style of a JPEG 2000 codestream: Scod (1 octet), SGcod (4 octets, big-endian), then SPcod to the
/// end (ISO/IEC 15444-1 COD marker segment, ST 422).
class J2KCodingStyleDefault final : public ValueType<J2KCodingStyleDefault, ByteStringBase> {
 public:
  J2KCodingStyleDefault();
  /// @param spcod  copied; may be null when `size` is 0.
  /// @throws InvalidLength when the value would be 2^32 octets or more.
  J2KCodingStyleDefault(uint8 scod, uint32 sGcod, const uint8* spcod, std::size_t size);

  uint8 scod() const { return rawBuffer()[0]; }
  uint32 sGcod() const;
  const DataStream& spcod() const { return spcod_; }

  static auto_ptr<J2KCodingStyleDefault> decode(const uint8* bytes, std::size_t size);

 private:
  DataStream spcod_;
};

}  // namespace Vantor::Types
