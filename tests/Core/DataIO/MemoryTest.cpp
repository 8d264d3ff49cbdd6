#include "Core/DataIO/Memory.h"

#include <gmock/gmock.h>

#include <limits>

#include "Core/Platform/Exceptions.h"

namespace Vantor::DataIO::Memory {
namespace {

using Exceptions::ParseError;
using testing::StrEq;
using testing::ThrowsMessage;

constexpr uint8 kBytes[] = {0x10, 0x20, 0x30, 0x40};

TEST(MemoryDataSource, ReadsFromFrontToBack) {
  MemoryDataSource source(kBytes, sizeof kBytes);
  uint8 read[3] = {};
  source.read(read, 1);
  source.skip(1);
  source.read(read + 1, 2);
  EXPECT_THAT(read, testing::ElementsAre(0x10, 0x30, 0x40));
  EXPECT_EQ(source.position(), 4u);
  EXPECT_EQ(source.remaining(), 0u);
}

TEST(MemoryDataSource, NamesOffsetDemandAndRestWhenReadPastTheEnd) {
  MemoryDataSource source(kBytes, sizeof kBytes);
  source.skip(3);
  uint8 read[2] = {0xAA, 0xBB};
  EXPECT_THAT([&] { source.read(read, 2); },
              ThrowsMessage<ParseError>(StrEq("at byte offset 3: expected 2 more bytes, found 1")));
  EXPECT_THAT(read, testing::ElementsAre(0xAA, 0xBB));
  EXPECT_EQ(source.position(), 3u);
}

TEST(MemoryDataSource, NamesOffsetsOfTheFileThatTheBytesComeFrom) {
  MemoryDataSource source(kBytes, sizeof kBytes, false, 5000000000);
  source.skip(4);
  EXPECT_EQ(source.position(), 5000000004u);
  EXPECT_THAT([&] { source.skip(1); },
              ThrowsMessage<ParseError>(StrEq("at byte offset 5000000004: expected 1 more bytes, found 0")));
}

TEST(MemoryDataSource, RefusesToSkipSoFarThatThePositionWouldOverflow) {
  MemoryDataSource source(kBytes, sizeof kBytes);
  source.skip(2);
  EXPECT_THROW(source.skip(std::numeric_limits<uint64>::max()), ParseError);
  EXPECT_THROW(source.skip(std::numeric_limits<uint64>::max() - 1), ParseError);
  EXPECT_EQ(source.position(), 2u);
}

TEST(MemoryDataSource, ReadsItsOwnCopyWhenAskedToCopy) {
  Bytes bytes = {0x01, 0x02};
  MemoryDataSource copying(bytes.data(), bytes.size(), true);
  MemoryDataSource sharing(bytes.data(), bytes.size());
  bytes[0] = 0x99;
  EXPECT_EQ(readBigEndian<uint8>(copying), 0x01);
  EXPECT_EQ(readBigEndian<uint8>(sharing), 0x99);
}

TEST(MemoryFile, ReadsFromAnyOffset) {
  MemoryFile file(kBytes, sizeof kBytes, "a file");
  uint8 read[2] = {};
  file.seek(2);
  file.read(read, 2);
  EXPECT_THAT(read, testing::ElementsAre(0x30, 0x40));
  EXPECT_EQ(file.remaining(), 0u);
  file.seek(0);
  file.skip(1);
  EXPECT_EQ(file.readUpTo(read, 1), 1u);
  EXPECT_EQ(read[0], 0x20);
  EXPECT_EQ(file.position(), 2u);
  EXPECT_EQ(file.size(), 4u);
}

TEST(MemoryFile, IsNamedWhenAnOffsetLiesBehindItsEnd) {
  MemoryFile file(kBytes, sizeof kBytes, "a file");
  file.seek(4);
  EXPECT_THAT(
      [&] { file.seek(5); },
      ThrowsMessage<ParseError>(StrEq("at byte offset 5: expected an offset within 'a file', which has 4 bytes")));
  EXPECT_EQ(file.position(), 4u);
  uint8 read[2] = {};
  EXPECT_EQ(file.readUpTo(read, 2), 0u);
  EXPECT_THROW(file.read(read, 1), ParseError);
}

TEST(MemoryFile, OwnsBytesThatItIsGiven) {
  MemoryFile file(Bytes{1, 2, 3});
  uint8 read[3] = {};
  file.read(read, 3);
  EXPECT_THAT(read, testing::ElementsAre(1, 2, 3));
  EXPECT_EQ(file.name(), "memory");
}

TEST(MemoryDataSource, AcceptsANullPointerForNoBytes) {
  MemoryDataSource source(nullptr, 0, true);
  EXPECT_NO_THROW(source.read(nullptr, 0));
  EXPECT_NO_THROW(source.skip(0));
  EXPECT_THROW(source.skip(1), ParseError);
}

TEST(MemoryDataSink, CollectsWhatIsWritten) {
  MemoryDataSink sink(2);
  EXPECT_EQ(sink.serializedSize(), 0u);
  sink.write(kBytes, 3);
  sink.write(nullptr, 0);
  sink.write(kBytes + 3, 1);
  EXPECT_EQ(sink.position(), 4u);
  EXPECT_EQ(sink.serializedSize(), 4u);
  EXPECT_EQ(Bytes(sink.rawBuffer(), sink.rawBuffer() + 4), (Bytes{0x10, 0x20, 0x30, 0x40}));
}

TEST(MemoryDataSink, IsEmptyAfterItsBytesWereTaken) {
  MemoryDataSink sink;
  sink.write(kBytes, 2);
  EXPECT_EQ(sink.take(), (Bytes{0x10, 0x20}));
  EXPECT_EQ(sink.serializedSize(), 0u);
  sink.write(kBytes + 3, 1);
  EXPECT_EQ(sink.take(), (Bytes{0x40}));
}

}  // namespace
}  // namespace Vantor::DataIO::Memory
