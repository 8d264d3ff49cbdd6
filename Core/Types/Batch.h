#pragma once

#include "Core/Types/Collection.h"

namespace Vantor::Types {

/// A collection in no particular order; the order read is the order written (ST 377-1).
class Batch final : public CollectionType<Batch> {
 public:
  using CollectionType::CollectionType;
};

}  // namespace Vantor::Types
