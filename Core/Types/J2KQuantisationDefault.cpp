#include "Core/Types/J2KQuantisationDefault.h"

namespace Vantor::Types {

J2KQuantisationDefault::J2KQuantisationDefault() : J2KQuantisationDefault(0, nullptr, 0) {}

J2KQuantisationDefault::J2KQuantisationDefault(uint8 sqcd, const uint8* sPgcd, std::size_t size)
    : ValueType(Bytes(1, sqcd), sPgcd, size), sPgcd_(sPgcd, size) {}

auto_ptr<J2KQuantisationDefault> J2KQuantisationDefault::decode(const uint8* bytes, std::size_t size) {
  if (size == 0) return nullptr;
  return std::make_unique<J2KQuantisationDefault>(bytes[0], bytes + 1, size - 1);
}

}  // namespace Vantor::Types
