#pragma once

#include "Core/KLV/Value.h"
#include "Core/Types/ByteString.h"

namespace Vantor::Types {

/// Octets of a property that the dictionary does not know, or that do not decode as its type.
class Unknown final : public ByteString<Unknown> {
 public:
  using ByteString::ByteString;
  explicit Unknown(const KLV::Value& value) : ByteString(value.rawBuffer(), value.serializedSize()) {}
};

}  // namespace Vantor::Types
