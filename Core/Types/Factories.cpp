#include "Core/Types/Factories.h"

#include <cerrno>
#include <limits>
#include <system_error>

#include "Core/Platform/Raise.h"
#include "Core/Platform/System.h"
#include "Core/Types/Types.h"

namespace Vantor::Types::Factories {

auto_ptr<SimpleDataType> fromBytes(Identifiers::Identifier type, const uint8* bytes, std::size_t size) {
  if (size > std::numeric_limits<uint32>::max()) return nullptr;
  switch (type) {
#define VANTOR_DECODE_CASE(Type, number, octets) \
  case Identifiers::k##Type:                     \
    return Type::decode(bytes, size);
    VANTOR_FOR_EACH_TYPE(VANTOR_DECODE_CASE)
#undef VANTOR_DECODE_CASE
    case Identifiers::kNone:
      break;
  }
  return nullptr;
}

auto_ptr<SimpleDataType> collectionFromBytes(Identifiers::Identifier arrayOrBatch, Identifiers::Identifier itemType,
                                             const uint8* bytes, std::size_t size) {
  if (size > std::numeric_limits<uint32>::max()) return nullptr;
  if (arrayOrBatch == Identifiers::kArray) return Array::decode(itemType, bytes, size);
  if (arrayOrBatch == Identifiers::kBatch) return Batch::decode(itemType, bytes, size);
  return nullptr;
}

namespace UID {

namespace {

using Octets = std::array<uint8, UUID::kSize>;

Octets randomOctets() {
  Octets octets{};
  if (!Platform::System::fillWithRandomOctets(octets.data(), octets.size())) {
    Exceptions::raise<Exceptions::IOError>("The system gives no random octets: {}",
                                           std::generic_category().message(errno));
  }
  return octets;
}

}  // namespace

UUID generateUUID() {
  constexpr std::size_t kVersionAt = 6;
  constexpr std::size_t kVariantAt = 8;
  Octets octets = randomOctets();
  octets[kVersionAt] = static_cast<uint8>((octets[kVersionAt] & 0x0f) | 0x40);
  octets[kVariantAt] = static_cast<uint8>((octets[kVariantAt] & 0x3f) | 0x80);
  UUID identifier(octets);
  return identifier;
}

}  // namespace UID

}  // namespace Vantor::Types::Factories
