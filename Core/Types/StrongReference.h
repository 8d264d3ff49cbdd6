#pragma once

#include "Core/Types/Reference.h"

namespace Vantor::Types {

/// Refers to a set that belongs to the referring set: one-to-one, the target has no other owner (ST 377-1).
class StrongReference final : public ReferenceType<StrongReference> {
 public:
  using ReferenceType::ReferenceType;
};

}  // namespace Vantor::Types
