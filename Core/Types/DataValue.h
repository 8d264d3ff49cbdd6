#pragma once

#include "Core/Types/ByteString.h"

namespace Vantor::Types {

/// A run of octets that a data definition describes elsewhere.
class DataValue final : public ByteString<DataValue> {
 public:
  using ByteString::ByteString;
};

}  // namespace Vantor::Types
