#pragma once

#include "Core/KLV/Value.h"
#include "Core/Types/ByteString.h"

namespace Vantor::Types {

/// A value whose type the dictionary does not tell, or whose octets are not what its type writes: carried as they are.
class Unknown final : public ByteString<Unknown> {
 public:
  using ByteString::ByteString;
  explicit Unknown(const KLV::Value& value) : ByteString(value.rawBuffer(), value.serializedSize()) {}
};

}  // namespace Vantor::Types
