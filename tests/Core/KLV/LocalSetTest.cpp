#include "Core/KLV/LocalSet.h"

#include <gmock/gmock.h>

#include "Core/DataIO/Memory.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor::KLV {
namespace {

using DataIO::Memory::MemoryDataSink;
using Exceptions::InvalidFormat;
using Exceptions::InvalidLength;
using Exceptions::ParseError;
using testing::HasSubstr;
using testing::StrEq;
using testing::ThrowsMessage;

constexpr auto kTwoByte = LocalSetCoding::kTwoByteLengths;
constexpr auto kBER = LocalSetCoding::kBERLengths;

const Bytes kTwoByteSet = {0x3C, 0x0A, 0x00, 0x03, 0x01, 0x02, 0x03,          // three bytes
                           0x15, 0x01, 0x00, 0x00,                            // none
                           0xFF, 0xFE, 0x00, 0x02, 0xAA, 0xBB};               // two
const Bytes kBERSet = {0x3C, 0x0A, 0x03, 0x01, 0x02, 0x03,                    // short form
                       0x15, 0x01, 0x83, 0x00, 0x00, 0x00,                    // four octets
                       0xFF, 0xFE, 0x88, 0,    0,    0,    0, 0, 0, 0, 0x02,  // nine octets
                       0xAA, 0xBB};

/// The items point into `bytes`.
Templates::vector<LocalSetItem> readFrom(LocalSetCoding coding, const Bytes& bytes) {
  return readLocalSet(coding, bytes.data(), bytes.size(), 1000);
}

Bytes valueOf(const LocalSetItem& item) { return Bytes(item.value, item.value + item.size); }

Bytes rewritten(LocalSetCoding coding, const Bytes& set) {
  MemoryDataSink sink;
  for (const LocalSetItem& item : readFrom(coding, set)) {
    writeLocalSetItem(sink, coding, item.tag, item.value, item.size, item.lengthOctets);
  }
  return sink.take();
}

TEST(LocalSet, HasTheCodingThatItsKeyTells) {
  EXPECT_EQ(localSetCoding(Key(wstring(u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2F.00"), kDottedForm)), kTwoByte);
  EXPECT_EQ(localSetCoding(Key(wstring(u"06.0E.2B.34.02.13.01.01.0D.01.01.01.01.01.2F.00"), kDottedForm)), kBER);
}

TEST(LocalSet, HasTwoByteLengthsWhereItsKeyIsAUUIDWithSwappedHalves) {
  EXPECT_EQ(localSetCoding(Key(wstring(u"A1.00.00.00.00.13.00.01.0F.0E.0D.0C.00.00.40.01"), kDottedForm)), kTwoByte);
}

TEST(LocalSet, NamesTheKeyThatIsNotALocalSets) {
  EXPECT_THAT([] { localSetCoding(Key()); },
              ThrowsMessage<InvalidFormat>(StrEq("expected the key of a local set with 2-byte tags, found "
                                                 "00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00")));
}

TEST(LocalSet, IsReadWithTwoByteLengths) {
  const auto items = readFrom(kTwoByte, kTwoByteSet);
  ASSERT_EQ(items.size(), 3u);
  EXPECT_EQ(items[0].tag, 0x3C0A);
  EXPECT_EQ(valueOf(items[0]), (Bytes{0x01, 0x02, 0x03}));
  EXPECT_EQ(items[0].lengthOctets, 2);
  EXPECT_EQ(items[1].tag, 0x1501);
  EXPECT_EQ(items[1].size, 0u);
  EXPECT_EQ(items[2].tag, 0xFFFE);
  EXPECT_EQ(valueOf(items[2]), (Bytes{0xAA, 0xBB}));
}

TEST(LocalSet, IsReadWithBERLengths) {
  const auto items = readFrom(kBER, kBERSet);
  ASSERT_EQ(items.size(), 3u);
  EXPECT_EQ(valueOf(items[0]), (Bytes{0x01, 0x02, 0x03}));
  EXPECT_EQ(items[0].lengthOctets, 1);
  EXPECT_EQ(items[1].size, 0u);
  EXPECT_EQ(items[1].lengthOctets, 4);
  EXPECT_EQ(valueOf(items[2]), (Bytes{0xAA, 0xBB}));
  EXPECT_EQ(items[2].lengthOctets, 9);
}

TEST(LocalSet, HasNoItemsWhenItIsEmpty) {
  EXPECT_TRUE(readLocalSet(kTwoByte, nullptr, 0).empty());
  EXPECT_TRUE(readLocalSet(kBER, nullptr, 0).empty());
}

TEST(LocalSet, ListsATagAsOftenAsItOccurs) {
  const Bytes set = {0x3C, 0x0A, 0x00, 0x01, 0x07, 0x3C, 0x0A, 0x00, 0x01, 0x08};
  const auto items = readFrom(kTwoByte, set);
  ASSERT_EQ(items.size(), 2u);
  EXPECT_EQ(valueOf(items[0]), (Bytes{0x07}));
  EXPECT_EQ(valueOf(items[1]), (Bytes{0x08}));
}

TEST(LocalSet, IsWrittenByteForByteAsItWasRead) {
  EXPECT_EQ(rewritten(kTwoByte, kTwoByteSet), kTwoByteSet);
  EXPECT_EQ(rewritten(kBER, kBERSet), kBERSet);
}

TEST(LocalSet, IsRefusedWhenItIsCutWithinAnItem) {
  for (const LocalSetCoding coding : {kTwoByte, kBER}) {
    const Bytes& set = coding == kTwoByte ? kTwoByteSet : kBERSet;
    std::size_t itemsBefore = 0;
    const auto whole = readFrom(coding, set);
    for (std::size_t size = 0; size < set.size(); ++size) {
      const auto& next = whole[itemsBefore];
      const Bytes cut(set.begin(), set.begin() + static_cast<std::ptrdiff_t>(size));
      const auto offset = static_cast<std::size_t>(next.value - set.data());
      const std::size_t start = offset - next.lengthOctets - sizeof next.tag;
      if (size == start) {
        EXPECT_EQ(readFrom(coding, cut).size(), itemsBefore);
      } else {
        EXPECT_THAT([&] { readFrom(coding, cut); }, ThrowsMessage<ParseError>(HasSubstr("at byte offset 10")));
      }
      if (size + 1 == offset + next.size) ++itemsBefore;
    }
    EXPECT_EQ(itemsBefore, 3u);
  }
}

TEST(LocalSet, NamesOffsetAndTagOfAnItemThatRunsPastTheEnd) {
  EXPECT_THAT(
      [] {
        readFrom(kTwoByte, {0x15, 0x01, 0x00, 0x00, 0x3C, 0x0A, 0xFF, 0xFF, 0x01, 0x02});
      },
      ThrowsMessage<ParseError>(
          StrEq("at byte offset 1008: expected 65535 bytes for the local set item with tag 3C.0A, found 2")));
}

TEST(LocalSet, NamesWhereTheTagAndLengthOfAnItemAreCutShort) {
  EXPECT_THAT(
      [] {
        readFrom(kTwoByte, {0x15, 0x01, 0x00, 0x00, 0x3C, 0x0A, 0x00});
      },
      ThrowsMessage<ParseError>(StrEq("at byte offset 1004: expected the tag and length of a local set item, 4 "
                                      "bytes or more, found 3 bytes")));
}

TEST(LocalSet, RefusesALengthThatWouldOverflowTheOffset) {
  EXPECT_THAT(
      [] {
        readFrom(kBER, {0x3C, 0x0A, 0x88, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x01});
      },
      ThrowsMessage<ParseError>(HasSubstr("at byte offset 1011: expected 18446744073709551615 bytes")));
  EXPECT_THROW(readFrom(kBER, {0x3C, 0x0A, 0x88, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xF5, 0x01}), ParseError);
}

TEST(LocalSet, NamesTheOffsetOfALengthWithoutEnd) {
  EXPECT_THAT(
      [] {
        readFrom(kBER, {0x3C, 0x0A, 0x80, 0x01, 0x00, 0x00});
      },
      ThrowsMessage<ParseError>(HasSubstr("at byte offset 1002: expected a BER length of 1 to 9 octets")));
}

TEST(LocalSetItem, TakesTheCustomaryBERLengthUnlessAskedOtherwise) {
  MemoryDataSink sink;
  const Bytes value(200, 0x55);
  writeLocalSetItem(sink, kBER, 0x0102, value.data(), value.size());
  EXPECT_EQ(Bytes(sink.rawBuffer(), sink.rawBuffer() + 7), (Bytes{0x01, 0x02, 0x83, 0x00, 0x00, 0xC8, 0x55}));
  EXPECT_EQ(sink.serializedSize(), 206u);
}

TEST(LocalSetItem, HoldsUpTo65535BytesWithATwoByteLength) {
  MemoryDataSink sink;
  const Bytes value(65536, 0x55);
  writeLocalSetItem(sink, kTwoByte, 0x3C0A, value.data(), 65535);
  EXPECT_EQ(sink.serializedSize(), 65539u);
  EXPECT_THAT([&] { writeLocalSetItem(sink, kTwoByte, 0x3C0A, value.data(), 65536); },
              ThrowsMessage<InvalidLength>(StrEq("expected at most 65535 bytes for the local set item with tag 3C.0A, "
                                                 "whose length has 2 bytes, found 65536")));
  EXPECT_EQ(sink.serializedSize(), 65539u);
}

TEST(LocalSetItem, IsNotBegunWhenItsLengthCannotBeWritten) {
  MemoryDataSink sink;
  EXPECT_THROW(writeLocalSetItem(sink, kBER, 0x3C0A, nullptr, 0, 10), InvalidLength);
  EXPECT_EQ(sink.serializedSize(), 0u);
}

}  // namespace
}  // namespace Vantor::KLV
