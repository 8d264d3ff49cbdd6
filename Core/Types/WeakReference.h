#pragma once

#include "Core/Types/Reference.h"

namespace Vantor::Types {

/// Refers to a set that belongs to another: many sets may name the same target (ST 377-1).
class WeakReference final : public ReferenceType<WeakReference> {
 public:
  using ReferenceType::ReferenceType;
};

}  // namespace Vantor::Types
