#pragma once

#include "Core/Platform/Types.h"

/// The one list of value types, in the order of the visitor's operations: `X(class, identifier number, octets on the
/// wire)`, with 0 octets where the size varies. Identifiers, sizes, forward declarations, visitors, factories and the
/// tests of every type are made from it. To add a type, add its line here; the compiler then points at what is missing:
/// the header in Types.h, the operation of each visitor, the sample values of the tests.
#define VANTOR_FOR_EACH_TYPE(X)    \
  X(J2KQuantisationDefault, 39, 0) \
  X(J2KCodingStyleDefault, 38, 0)  \
  X(J2KPictureComponent, 37, 3)    \
  X(DataValue, 36, 0)              \
  X(StrongReference, 29, 16)       \
  X(WeakReference, 30, 16)         \
  X(Unknown, 24, 0)                \
  X(VersionType, 28, 2)            \
  X(UUID, 27, 16)                  \
  X(UTF8String, 42, 0)             \
  X(UTF16String, 26, 0)            \
  X(UTF16, 25, 2)                  \
  X(UniversalLabel, 23, 16)        \
  X(UMID64, 22, 64)                \
  X(UMID32, 21, 32)                \
  X(UInt8, 20, 1)                  \
  X(UInt64, 19, 8)                 \
  X(UInt32, 18, 4)                 \
  X(UInt16, 17, 2)                 \
  X(Timestamp, 16, 8)              \
  X(SignalStandard, 35, 1)         \
  X(RGBALayout, 34, 16)            \
  X(Rational, 15, 8)               \
  X(ProductVersion, 14, 10)        \
  X(Position, 13, 8)               \
  X(Orientation, 33, 1)            \
  X(LocalTag, 12, 2)               \
  X(Length, 11, 8)                 \
  X(ISO8String, 40, 0)             \
  X(ISO7String, 9, 0)              \
  X(Int8, 8, 1)                    \
  X(Int64, 7, 8)                   \
  X(Int32, 6, 4)                   \
  X(Int16, 5, 2)                   \
  X(DataStream, 3, 0)              \
  X(Boolean, 2, 1)                 \
  X(Batch, 32, 0)                  \
  X(AUID, 41, 16)                  \
  X(Array, 31, 0)

namespace Vantor::Types {

#define VANTOR_DECLARE_TYPE(Type, number, octets) class Type;
VANTOR_FOR_EACH_TYPE(VANTOR_DECLARE_TYPE)
#undef VANTOR_DECLARE_TYPE

}  // namespace Vantor::Types
