#pragma once

#include "Core/Types/ByteString.h"
#include "Core/Types/DataStream.h"

namespace Vantor::Types {

/// The default quantisation of a JPEG 2000 codestream: Sqcd (1 octet), then SPqcd to the end (ISO/IEC 15444-1 QCD
/// marker segment, ST 422).
class J2KQuantisationDefault final : public ValueType<J2KQuantisationDefault, ByteStringBase> {
 public:
  J2KQuantisationDefault();
  /// @param sPgcd  copied; may be null when `size` is 0.
  /// @throws InvalidLength when the value would be 2^32 octets or more.
  J2KQuantisationDefault(uint8 sqcd, const uint8* sPgcd, std::size_t size);

  uint8 sqcd() const { return rawBuffer()[0]; }
  const DataStream& sPgcd() const { return sPgcd_; }

  static auto_ptr<J2KQuantisationDefault> decode(const uint8* bytes, std::size_t size);

 private:
  DataStream sPgcd_;
};

}  // namespace Vantor::Types
