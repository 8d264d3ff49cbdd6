#pragma once

#include "Core/Types/SimpleDataType.h"
#include "Core/Types/Visitors.h"

namespace Vantor::Types {

/// The base of every class of the type list: identifier, dispatch, copies, `==` and `!=`.
///
/// Such a class also has `static auto_ptr<Derived> decode(const uint8* bytes, std::size_t size)`: the value that writes
/// exactly these octets, or null when there is none. `bytes` may be null when `size` is 0.
template <class Derived, class Base = SimpleDataType>
class ValueType : public Base {
 public:
  static constexpr Identifiers::Identifier kIdentifier = TypeTraits<Derived>::kIdentifier;

  Identifiers::Identifier identifier() const override { return kIdentifier; }
  void accept(Visitors::Visitor& visitor) const override { visitor.visit(derived()); }
  auto_ptr<SimpleDataType> clone() const override { return std::make_unique<Derived>(derived()); }

  /// As `equals`.
  friend bool operator==(const Derived& left, const Derived& right) {
    return static_cast<const ValueType&>(left).hasSameValue(right);
  }
  friend bool operator!=(const Derived& left, const Derived& right) { return !(left == right); }

 protected:
  using Base::Base;

  const Derived& derived() const { return static_cast<const Derived&>(*this); }
};

}  // namespace Vantor::Types
