#pragma once

#include "Core/Types/ByteString.h"

namespace Vantor::Types {

/// A run of octets whose meaning depends on the property.
class DataStream final : public ByteString<DataStream> {
 public:
  using ByteString::ByteString;
};

}  // namespace Vantor::Types
