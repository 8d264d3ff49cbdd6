#include "Core/MXF/Fill.h"

#include <gmock/gmock.h>

#include "Core/KLV/Keys.h"
#include "Core/Platform/Exceptions.h"
#include "tests/Core/MXF/MXFBytes.h"

namespace Vantor::MXF {
namespace {

Bytes fillOfSize(uint64 size) {
  DataIO::Memory::MemoryDataSink sink;
  writeFill(sink, size);
  return sink.take();
}

/// Whether the bytes are one fill item whose value is zeros.
bool isOneFill(const Bytes& bytes) {
  DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
  uint8 key[KLV::Key::kSize];
  source.read(key, sizeof key);
  const auto length = KLV::readBERLength(source);
  const bool isZero = std::all_of(bytes.end() - static_cast<std::ptrdiff_t>(source.remaining()), bytes.end(),
                                  [](uint8 octet) { return octet == 0; });
  return KLV::isFill(KLV::Key(key)) && length.value == source.remaining() && isZero;
}

TEST(Fill, IsOneItemForEverySizeFromSeventeen) {
  for (uint64 size = 17; size < 700; ++size) {
    EXPECT_EQ(fillOfSize(size).size(), size);
    EXPECT_TRUE(isOneFill(fillOfSize(size))) << size;
  }
}

TEST(Fill, HasTheCustomaryLengthFieldWhereItFits) {
  EXPECT_EQ(fillOfSize(17), klvHeader(KLV::fillKey(), 0, 1));
  EXPECT_EQ(fillOfSize(19), klvHeader(KLV::fillKey(), 2, 1) + zeros(2));
  EXPECT_EQ(fillOfSize(20), klvHeader(KLV::fillKey(), 0, 4));
  EXPECT_EQ(fillOfSize(512), klvHeader(KLV::fillKey(), 492, 4) + zeros(492));
}

TEST(Fill, TakesALongerLengthFieldWhereFourOctetsDoNotSuffice) {
  for (const uint64 size : {(uint64{1} << 24) + 19, (uint64{1} << 24) + 20}) {
    EXPECT_EQ(fillOfSize(size).size(), size);
    EXPECT_TRUE(isOneFill(fillOfSize(size))) << size;
  }
}

TEST(Fill, CannotBeSmallerThanKeyAndLength) {
  EXPECT_TRUE(canFill(0));
  EXPECT_TRUE(fillOfSize(0).empty());
  for (uint64 size = 1; size < 17; ++size) {
    EXPECT_FALSE(canFill(size));
    EXPECT_THROW(fillOfSize(size), Exceptions::InvalidLength);
  }
  EXPECT_TRUE(canFill(17));
}

}  // namespace
}  // namespace Vantor::MXF
