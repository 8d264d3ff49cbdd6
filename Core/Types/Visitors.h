#pragma once

#include "Core/Types/TypeList.h"

/// Dispatch by the type of a value: `value.accept(visitor)` calls the one operation for that type.
namespace Vantor::Types::Visitors {

/// One operation for every value type; a class that lacks one cannot be instantiated.
class Visitor {
 public:
  virtual ~Visitor() = default;

#define VANTOR_DECLARE_VISIT(Type, number, octets) virtual void visit(const Type& value) = 0;
  VANTOR_FOR_EACH_TYPE(VANTOR_DECLARE_VISIT)
#undef VANTOR_DECLARE_VISIT

 protected:
  Visitor() = default;
  Visitor(const Visitor&) = default;
  Visitor& operator=(const Visitor&) = default;
};

/// Ignores every value. Derive from it to handle a few types only, with `using NullVisitor::visit;` so that the other
/// operations are not hidden.
class NullVisitor : public Visitor {
 public:
#define VANTOR_IGNORE_VISIT(Type, number, octets) \
  void visit(const Type&) override {}
  VANTOR_FOR_EACH_TYPE(VANTOR_IGNORE_VISIT)
#undef VANTOR_IGNORE_VISIT
};

}  // namespace Vantor::Types::Visitors
