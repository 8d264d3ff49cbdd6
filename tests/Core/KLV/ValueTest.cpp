#include "Core/KLV/Value.h"

#include <gmock/gmock.h>

#include <limits>

#include "Core/DataIO/Memory.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor::KLV {
namespace {

using DataIO::Memory::MemoryDataSource;
using Exceptions::ParseError;
using testing::StrEq;
using testing::ThrowsMessage;

constexpr uint8 kBytes[] = {0x01, 0x02, 0x03, 0x04};

TEST(Value, ReadsItsBytesAndLeavesTheRest) {
  MemoryDataSource source(kBytes, sizeof kBytes);
  const Value value(source, 3);
  EXPECT_EQ(value.bytes(), (Bytes{0x01, 0x02, 0x03}));
  EXPECT_EQ(value.serializedSize(), 3u);
  EXPECT_EQ(value.rawBuffer()[2], 0x03);
  EXPECT_EQ(source.remaining(), 1u);
}

TEST(Value, ReadsAllThatRemains) {
  MemoryDataSource source(kBytes, sizeof kBytes);
  EXPECT_EQ(Value(source, source.remaining()), Value(Bytes(kBytes, kBytes + 4)));
}

TEST(Value, IsEmptyByDefaultAndWhenNoBytesAreRead) {
  MemoryDataSource source(nullptr, 0);
  EXPECT_EQ(Value(source, 0), Value());
  EXPECT_EQ(Value().serializedSize(), 0u);
}

TEST(Value, RefusesASizeBeyondTheSourceBeforeAllocating) {
  MemoryDataSource source(kBytes, sizeof kBytes);
  source.skip(1);
  EXPECT_THAT([&] { Value(source, 4); },
              ThrowsMessage<ParseError>(StrEq("at byte offset 1: expected 4 more bytes, found 3")));
  EXPECT_THROW(Value(source, std::numeric_limits<uint64>::max()), ParseError);
  EXPECT_EQ(source.position(), 1u);
}

TEST(Value, DiffersByBytesAndBySize) {
  EXPECT_NE(Value(Bytes{0x01}), Value(Bytes{0x02}));
  EXPECT_NE(Value(Bytes{0x01}), Value(Bytes{0x01, 0x00}));
  EXPECT_EQ(Value(Bytes{0x01}), Value(Bytes{0x01}));
}

}  // namespace
}  // namespace Vantor::KLV
