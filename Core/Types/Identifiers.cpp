#include "Core/Types/Identifiers.h"

namespace Vantor::Types::Identifiers {

uint32 typeSize(Identifier type) {
  switch (type) {
#define VANTOR_SIZE_CASE(Type, number, octets) \
  case k##Type:                                \
    return TypeTraits<Type>::kSize;
    VANTOR_FOR_EACH_TYPE(VANTOR_SIZE_CASE)
#undef VANTOR_SIZE_CASE
    case kNone:
      break;
  }
  return 0;
}

const char* name(Identifier type) {
  switch (type) {
#define VANTOR_NAME_CASE(Type, number, octets) \
  case k##Type:                                \
    return #Type;
    VANTOR_FOR_EACH_TYPE(VANTOR_NAME_CASE)
#undef VANTOR_NAME_CASE
    case kNone:
      break;
  }
  return "";
}

}  // namespace Vantor::Types::Identifiers
