#pragma once

#include "Core/Types/ByteString.h"

namespace Vantor::Types {

/// A run of octets whose meaning the property's definition gives.
class DataStream final : public ByteString<DataStream> {
 public:
  using ByteString::ByteString;
};

}  // namespace Vantor::Types
