#include "Core/MXF/KLVHeader.h"

#include <algorithm>
#include <array>

#include "Core/KLV/Keys.h"

namespace Vantor::MXF {

using DataIO::File::FileDataSource;

KLV::Key peekKey(FileDataSource& source) {
  std::array<uint8, KLV::Key::kSize> octets{};
  const uint64 offset = source.position();
  source.read(octets.data(), static_cast<std::size_t>(std::min<uint64>(octets.size(), source.remaining())));
  source.seek(offset);
  return KLV::Key(octets);
}

KLVHeader readKLVHeader(FileDataSource& source) {
  KLVHeader klv;
  klv.offset = source.position();
  uint8 key[KLV::Key::kSize];
  source.read(key, sizeof key);
  klv.key = KLV::Key(key);
  klv.length = KLV::readBERLength(source);
  klv.valueOffset = source.position();
  return klv;
}

bool valueFits(const KLVHeader& klv, const FileDataSource& source) {
  return klv.length.value <= source.size() - klv.valueOffset;
}

void skipValue(const KLVHeader& klv, FileDataSource& source) {
  source.seek(valueFits(klv, source) ? klv.valueOffset + klv.length.value : source.size());
}

void skipFill(FileDataSource& source) {
  while (KLV::isFill(peekKey(source))) skipValue(readKLVHeader(source), source);
}

}  // namespace Vantor::MXF
