#pragma once

#include "Core/Types/Collection.h"

namespace Vantor::Types {

/// A collection whose order counts, such as the tracks of a package (ST 377-1).
class Array final : public CollectionType<Array> {
 public:
  using CollectionType::CollectionType;
};

}  // namespace Vantor::Types
