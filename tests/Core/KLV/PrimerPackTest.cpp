#include "Core/KLV/PrimerPack.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "Core/DataIO/Memory.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor::KLV {
namespace {

using DataIO::Memory::MemoryDataSink;
using Exceptions::ParseError;
using testing::HasSubstr;
using testing::StrEq;
using testing::ThrowsMessage;

const Bytes kTwoRows = {
    0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x12,                                                  // count, row size
    0x3C, 0x0A, 0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x15, 0x02, 0, 0, 0, 0,  // InstanceUID
    0x80, 0x01, 0x06, 0x0E, 0x2B, 0x34, 0x01, 0x01, 0x01, 0x0E, 0x0E, 0x0F, 0x01, 0x02, 0, 0, 0, 1,  // a dynamic tag
};

Templates::vector<PrimerEntry> readFrom(const Bytes& bytes) { return readPrimerPack(bytes.data(), bytes.size(), 5000); }

Bytes changed(std::size_t index, uint8 octet) {
  Bytes bytes = kTwoRows;
  bytes[index] = octet;
  return bytes;
}

TEST(PrimerPack, IsReadInFileOrder) {
  const auto entries = readFrom(kTwoRows);
  ASSERT_EQ(entries.size(), 2u);
  EXPECT_EQ(entries[0].tag, 0x3C0A);
  EXPECT_EQ(entries[0].label.toString(), u"06.0E.2B.34.01.01.01.01.01.01.15.02.00.00.00.00");
  EXPECT_EQ(entries[1].tag, 0x8001);
  EXPECT_EQ(entries[1].label.toString(), u"06.0E.2B.34.01.01.01.0E.0E.0F.01.02.00.00.00.01");
}

TEST(PrimerPack, IsWrittenByteForByteAsItWasRead) {
  MemoryDataSink sink;
  writePrimerPack(sink, readFrom(kTwoRows));
  EXPECT_EQ(sink.take(), kTwoRows);
}

TEST(PrimerPack, KeepsItsRowSizeWhenItHasNoRows) {
  const Bytes empty = {0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x12};
  EXPECT_TRUE(readFrom(empty).empty());
  MemoryDataSink sink;
  writePrimerPack(sink, {});
  EXPECT_EQ(sink.take(), empty);
}

TEST(PrimerPack, ListsATagAsOftenAsItOccurs) {
  Bytes bytes = kTwoRows;
  bytes[26] = 0x3C;
  bytes[27] = 0x0A;
  const auto entries = readFrom(bytes);
  ASSERT_EQ(entries.size(), 2u);
  EXPECT_EQ(entries[0].tag, entries[1].tag);
  EXPECT_NE(entries[0].label, entries[1].label);
}

TEST(PrimerPack, NamesOffsetAndSizeOfRowsThatAreNotEighteenBytes) {
  EXPECT_THAT(
      [] { readFrom(changed(7, 0x14)); },
      ThrowsMessage<ParseError>(StrEq("at byte offset 5004: expected a primer pack's row size of 18 bytes, found 20")));
  EXPECT_THROW(readFrom(changed(7, 0x00)), ParseError);
  EXPECT_THROW(readFrom(changed(4, 0x80)), ParseError);
}

TEST(PrimerPack, RefusesACountWithMoreRowsThanBytesBeforeAllocating) {
  EXPECT_THAT([] { readFrom(changed(3, 0x03)); },
              ThrowsMessage<ParseError>(
                  StrEq("at byte offset 5008: expected 54 bytes for the 3 rows of a primer pack, found 36")));
  Bytes most = kTwoRows;
  std::fill_n(most.begin(), 4, uint8{0xFF});
  EXPECT_THAT([&] { readFrom(most); }, ThrowsMessage<ParseError>(HasSubstr("expected 77309411310 bytes")));
}

TEST(PrimerPack, RefusesACountWhoseBytesFitOnlyModulo32Bits) {
  // 0x8E38E390 rows of 18 bytes are 0xA00000020 bytes, which end in the 32 bits of 32 bytes.
  const Bytes bytes = [] {
    Bytes head = {0x8E, 0x38, 0xE3, 0x90, 0x00, 0x00, 0x00, 0x12};
    head.resize(8 + 32);
    return head;
  }();
  EXPECT_THROW(readFrom(bytes), ParseError);
}

TEST(PrimerPack, RefusesBytesBehindTheLastRow) {
  Bytes bytes = kTwoRows;
  bytes.push_back(0x00);
  EXPECT_THAT([&] { readFrom(bytes); }, ThrowsMessage<ParseError>(HasSubstr("expected 36 bytes")));
  EXPECT_THROW(readFrom(changed(3, 0x01)), ParseError);
}

TEST(PrimerPack, IsRefusedWhenItIsCutShortAtAnyByte) {
  for (std::size_t size = 0; size < kTwoRows.size(); ++size) {
    const Bytes cut(kTwoRows.begin(), kTwoRows.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_THAT([&] { readFrom(cut); }, ThrowsMessage<ParseError>(HasSubstr("at byte offset 500"))) << size;
  }
}

}  // namespace
}  // namespace Vantor::KLV
