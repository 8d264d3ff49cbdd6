#include "Core/MXF/KLVHeader.h"

#include <array>

namespace Vantor::MXF {

using DataIO::SeekableSource;

KLV::Key peekKey(SeekableSource& source) {
  std::array<uint8, KLV::Key::kSize> octets{};
  const uint64 offset = source.position();
  source.readUpTo(octets.data(), octets.size());
  source.seek(offset);
  return KLV::Key(octets);
}

KLVHeader readKLVHeader(DataIO::DataSource& source) { return readKLVHeader(source, KLV::Key::read(source)); }

KLVHeader readKLVHeader(DataIO::DataSource& source, const KLV::Key& key) {
  const uint64 offset = source.position() - KLV::Key::kSize;
  const KLV::BERLength length = KLV::readBERLength(source);
  return {key, length, offset, source.position()};
}

void writeKLVHeader(DataIO::DataSink& sink, const KLV::Key& key, uint64 length, uint8 octets) {
  sink.write(key.rawBuffer(), KLV::Key::kSize);
  KLV::writeBERLength(sink, length, octets);
}

bool valueFits(const KLVHeader& klv, const SeekableSource& source) {
  return klv.length.value <= source.size() - klv.valueOffset;
}

void skipValue(const KLVHeader& klv, SeekableSource& source) {
  source.seek(valueFits(klv, source) ? klv.valueOffset + klv.length.value : source.size());
}

}  // namespace Vantor::MXF
