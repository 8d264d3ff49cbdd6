#include "Core/DataIO/BigEndian.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "Core/DataIO/Memory.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor::DataIO {
namespace {

constexpr uint8 kBytes[] = {0x81, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0xF8};

template <class T>
std::vector<int> written(T number) {
  uint8 bytes[sizeof(T)];
  writeBigEndian<T>(bytes, number);
  return std::vector<int>(bytes, bytes + sizeof bytes);
}

TEST(BigEndian, ReadsUnsignedNumbersOfEveryWidth) {
  EXPECT_EQ(readBigEndian<uint8>(kBytes), 0x81);
  EXPECT_EQ(readBigEndian<uint16>(kBytes), 0x8102);
  EXPECT_EQ(readBigEndian<uint32>(kBytes), 0x81020304u);
  EXPECT_EQ(readBigEndian<uint64>(kBytes), 0x81020304050607F8u);
}

TEST(BigEndian, ReadsTheFirstBitAsTheSignOfSignedNumbers) {
  EXPECT_EQ(readBigEndian<int8>(kBytes), -127);
  EXPECT_EQ(readBigEndian<int16>(kBytes), -32510);
  EXPECT_EQ(readBigEndian<int32>(kBytes), -2130574588);
  EXPECT_EQ(readBigEndian<int64>(kBytes), static_cast<int64>(0x81020304050607F8u));
}

TEST(BigEndian, ReadsFromAnyAddress) { EXPECT_EQ(readBigEndian<uint32>(kBytes + 1), 0x02030405u); }

TEST(BigEndian, WritesTheMostSignificantByteFirst) {
  EXPECT_EQ(written<uint8>(0x12), (std::vector<int>{0x12}));
  EXPECT_EQ(written<uint16>(0x1234), (std::vector<int>{0x12, 0x34}));
  EXPECT_EQ(written<uint32>(0x12345678), (std::vector<int>{0x12, 0x34, 0x56, 0x78}));
  EXPECT_EQ(written<uint64>(0x123456789ABCDEF0), (std::vector<int>{0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC, 0xDE, 0xF0}));
}

TEST(BigEndian, WritesNegativeNumbersInTwosComplement) {
  EXPECT_EQ(written<int8>(-1), (std::vector<int>{0xFF}));
  EXPECT_EQ(written<int16>(-2), (std::vector<int>{0xFF, 0xFE}));
  EXPECT_EQ(written<int32>(std::numeric_limits<int32>::min()), (std::vector<int>{0x80, 0, 0, 0}));
  EXPECT_EQ(written<int64>(-256), (std::vector<int>{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00}));
}

TEST(BigEndian, ReadsFromASourceAndMovesPastTheNumber) {
  Memory::MemoryDataSource source(kBytes, sizeof kBytes);
  EXPECT_EQ(readBigEndian<uint16>(source), 0x8102);
  EXPECT_EQ(readBigEndian<int8>(source), 3);
  EXPECT_EQ(source.position(), 3u);
}

TEST(BigEndian, DoesNotMoveASourceThatHoldsOnlyPartOfTheNumber) {
  Memory::MemoryDataSource source(kBytes, 3);
  EXPECT_THROW(readBigEndian<uint32>(source), Exceptions::ParseError);
  EXPECT_EQ(source.position(), 0u);
}

TEST(BigEndian, WritesToASinkInTheNamedWidth) {
  Memory::MemoryDataSink sink;
  writeBigEndian<uint16>(sink, 0x0102);
  writeBigEndian<uint32>(sink, 3);
  EXPECT_EQ(sink.take(), (Bytes{0x01, 0x02, 0x00, 0x00, 0x00, 0x03}));
}

}  // namespace
}  // namespace Vantor::DataIO
