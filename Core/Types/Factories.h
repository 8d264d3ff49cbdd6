#pragma once

#include "Core/Types/SimpleDataType.h"
#include "Core/Types/UUID.h"

/// Values made from a type number and octets, and new identifiers. Every function may be called from any thread.
namespace Vantor::Types::Factories {

/// Reads a value; a collection's items become `Unknown` values.
/// @param bytes  may be null when `size` is 0.
/// @return null when the octets are not exactly what a value of that type writes, or when there is no such type.
auto_ptr<SimpleDataType> fromBytes(Identifiers::Identifier type, const uint8* bytes, std::size_t size);

/// Reads a collection whose items are of one type.
/// @param arrayOrBatch  kArray or kBatch.
/// @return null when the octets are not exactly what such a collection writes; no memory is reserved for a count that
/// the octets cannot hold.
auto_ptr<SimpleDataType> collectionFromBytes(Identifiers::Identifier arrayOrBatch, Identifiers::Identifier itemType,
                                             const uint8* bytes, std::size_t size);

namespace UID {

/// A new random UUID: version 4, variant 1 (RFC 4122), from the system's random generator.
/// @throws IOError when the system has no random octets to give.
UUID generateUUID();

}  // namespace UID

}  // namespace Vantor::Types::Factories
