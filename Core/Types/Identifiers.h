#pragma once

#include "Core/Types/TypeList.h"

namespace Vantor::Types {

namespace Identifiers {

/// The data types of properties by number. The numbers are part of the interface.
enum Identifier : uint32 {
  /// No type at all; no value has it.
  kNone = 0,
#define VANTOR_ENUMERATE_TYPE(Type, number, octets) k##Type = number,
  VANTOR_FOR_EACH_TYPE(VANTOR_ENUMERATE_TYPE)
#undef VANTOR_ENUMERATE_TYPE
};

/// Octets on the wire of every value of that type; 0 when the size varies or there is no such type.
uint32 typeSize(Identifier type);

/// The name of the type's class, such as "UInt8"; an empty string when there is no such type.
const char* name(Identifier type);

}  // namespace Identifiers

/// The row of one class in the list: `kIdentifier`, and `kSize` in octets (0: varies). A class that is not in the list
/// does not compile.
template <class Type>
struct TypeTraits;

#define VANTOR_DEFINE_TRAITS(Type, number, octets)                                           \
  template <>                                                                                \
  struct TypeTraits<Type> {                                                                  \
    static constexpr Identifiers::Identifier kIdentifier = Identifiers::Identifier::k##Type; \
    static constexpr uint32 kSize = octets;                                                  \
  };
VANTOR_FOR_EACH_TYPE(VANTOR_DEFINE_TRAITS)
#undef VANTOR_DEFINE_TRAITS

}  // namespace Vantor::Types
