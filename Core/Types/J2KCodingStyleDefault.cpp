#include "Core/Types/J2KCodingStyleDefault.h"

#include "Core/DataIO/BigEndian.h"

namespace Vantor::Types {

namespace {

constexpr std::size_t kSGcodAt = 1;
constexpr std::size_t kSpcodAt = kSGcodAt + sizeof(uint32);

Bytes headOf(uint8 scod, uint32 sGcod) {
  Bytes octets(kSpcodAt);
  octets[0] = scod;
  DataIO::writeBigEndian<uint32>(octets.data() + kSGcodAt, sGcod);
  return octets;
}

}  // namespace

J2KCodingStyleDefault::J2KCodingStyleDefault() : J2KCodingStyleDefault(0, 0, nullptr, 0) {}

J2KCodingStyleDefault::J2KCodingStyleDefault(uint8 scod, uint32 sGcod, const uint8* spcod, std::size_t size)
    : ValueType(headOf(scod, sGcod), spcod, size), spcod_(spcod, size) {}

uint32 J2KCodingStyleDefault::sGcod() const { return DataIO::readBigEndian<uint32>(rawBuffer() + kSGcodAt); }

auto_ptr<J2KCodingStyleDefault> J2KCodingStyleDefault::decode(const uint8* bytes, std::size_t size) {
  if (size < kSpcodAt) return nullptr;
  return std::make_unique<J2KCodingStyleDefault>(bytes[0], DataIO::readBigEndian<uint32>(bytes + kSGcodAt),
                                                 bytes + kSpcodAt, size - kSpcodAt);
}

}  // namespace Vantor::Types
