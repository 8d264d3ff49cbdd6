#include "Core/KLV/CollectionHeader.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "Core/DataIO/Memory.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor::KLV {
namespace {

using DataIO::Memory::MemoryDataSink;
using DataIO::Memory::MemoryDataSource;

const Bytes kBytes = {0x00, 0x01, 0x00, 0x02,   // 65538 items
                      0x00, 0x00, 0x00, 0x10};  // of 16 bytes each

TEST(CollectionHeader, HasTheCountBeforeTheItemSize) {
  const auto header = CollectionHeader::parse(kBytes.data());
  EXPECT_EQ(header.count, 65538u);
  EXPECT_EQ(header.itemSize, 16u);
  Bytes written(CollectionHeader::kSize);
  header.render(written.data());
  EXPECT_EQ(written, kBytes);
}

TEST(CollectionHeader, IsTheSameInASourceAndASink) {
  MemoryDataSource source(kBytes.data(), kBytes.size());
  const auto header = CollectionHeader::parse(source);
  EXPECT_EQ(source.remaining(), 0u);
  MemoryDataSink sink;
  header.render(sink);
  EXPECT_EQ(sink.take(), kBytes);
}

TEST(CollectionHeader, CountsTheBytesOfTheItemsIn64Bits) {
  EXPECT_EQ((CollectionHeader{0xFFFFFFFF, 0xFFFFFFFF}.size()), 0xFFFFFFFE00000001u);
}

TEST(CollectionHeader, RefusesASourceThatEndsWithinIt) {
  MemoryDataSource source(kBytes.data(), 7);
  EXPECT_THROW(CollectionHeader::parse(source), Exceptions::ParseError);
}

}  // namespace
}  // namespace Vantor::KLV
