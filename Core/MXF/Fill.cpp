#include "Core/MXF/Fill.h"

#include <algorithm>
#include <array>

#include "Core/KLV/BERLength.h"
#include "Core/KLV/Keys.h"
#include "Core/Platform/Raise.h"

namespace Vantor::MXF {

namespace {

constexpr uint8 kCustomaryOctets = 4;

/// How many octets the length field has, where the size counts key, length field and value.
uint8 lengthOctets(uint64 size) {
  uint8 octets = size < KLV::Key::kSize + kCustomaryOctets ? 1 : kCustomaryOctets;
  while (KLV::berOctets(size - KLV::Key::kSize - octets, octets) != octets) ++octets;
  return octets;
}

void writeZeros(DataIO::DataSink& sink, uint64 size) {
  static constexpr std::array<uint8, 65536> kZeros{};
  for (uint64 left = size; left != 0; left -= std::min<uint64>(left, kZeros.size())) {
    sink.write(kZeros.data(), static_cast<std::size_t>(std::min<uint64>(left, kZeros.size())));
  }
}

}  // namespace

void writeFill(DataIO::DataSink& sink, uint64 size) {
  if (size == 0) return;
  if (!canFill(size)) {
    Exceptions::raise<Exceptions::InvalidLength>("a gap of {} bytes is too small for a fill item, which takes 17",
                                                 size);
  }
  const uint8 octets = lengthOctets(size);
  const uint64 valueSize = size - KLV::Key::kSize - octets;
  sink.write(KLV::fillKey().rawBuffer(), KLV::Key::kSize);
  KLV::writeBERLength(sink, valueSize, octets);
  writeZeros(sink, valueSize);
}

}  // namespace Vantor::MXF
