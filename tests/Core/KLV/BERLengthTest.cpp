#include "Core/KLV/BERLength.h"

#include <gmock/gmock.h>

#include <limits>

#include "Core/DataIO/Memory.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor::KLV {
namespace {

using DataIO::Memory::MemoryDataSink;
using DataIO::Memory::MemoryDataSource;
using Exceptions::InvalidLength;
using Exceptions::ParseError;
using testing::HasSubstr;
using testing::StrEq;
using testing::ThrowsMessage;

constexpr uint64 kMax = std::numeric_limits<uint64>::max();

BERLength readFrom(const Bytes& bytes) {
  MemoryDataSource source(bytes.data(), bytes.size(), false, 100);
  return readBERLength(source);
}

Bytes written(uint64 value, uint8 octets = 0) {
  MemoryDataSink sink;
  writeBERLength(sink, value, octets);
  EXPECT_EQ(sink.serializedSize(), berOctets(value, octets));
  return sink.take();
}

struct Sample {
  Bytes bytes;
  uint64 value;
};

/// One length field of each size, from 1 to 9 octets.
const Sample kSamples[] = {
    {{0x7F}, 127},
    {{0x81, 0x80}, 128},
    {{0x82, 0x01, 0x00}, 256},
    {{0x83, 0x01, 0x02, 0x03}, 0x010203},
    {{0x84, 0xFF, 0xFF, 0xFF, 0xFF}, 0xFFFFFFFF},
    {{0x85, 0x01, 0x00, 0x00, 0x00, 0x00}, 0x0100000000},
    {{0x86, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06}, 0x010203040506},
    {{0x87, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07}, 0x01020304050607},
    {{0x88, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, kMax},
};

TEST(BERLength, IsReadFromOneToNineOctets) {
  for (const Sample& sample : kSamples) {
    const BERLength length = readFrom(sample.bytes);
    EXPECT_EQ(length.value, sample.value);
    EXPECT_EQ(length.octets, sample.bytes.size());
  }
}

TEST(BERLength, IsWrittenInAsManyOctetsAsItWasReadFrom) {
  for (const Sample& sample : kSamples) {
    EXPECT_EQ(written(sample.value, static_cast<uint8>(sample.bytes.size())), sample.bytes);
  }
}

TEST(BERLength, KeepsLeadingZeroOctetsOfTheLongForm) {
  const Bytes padded = {0x88, 0, 0, 0, 0, 0, 0, 0, 0x05};
  EXPECT_EQ(readFrom(padded).value, 5u);
  EXPECT_EQ(readFrom(padded).octets, 9);
  EXPECT_EQ(written(5, 9), padded);
}

TEST(BERLength, LeavesTheSourceBehindTheField) {
  const uint8 bytes[] = {0x82, 0x01, 0x00, 0xEE};
  MemoryDataSource source(bytes, sizeof bytes);
  readBERLength(source);
  EXPECT_EQ(source.position(), 3u);
}

TEST(BERLength, RefusesTheIndefiniteForm) {
  EXPECT_THAT(
      [] {
        readFrom({0x80, 0x00, 0x00});
      },
      ThrowsMessage<ParseError>(
          StrEq("at byte offset 100: expected a BER length of 1 to 9 octets, found the indefinite form (0x80)")));
}

TEST(BERLength, RefusesMoreThanNineOctetsEvenIfTheValueIsSmall) {
  EXPECT_THAT(
      [] {
        readFrom({0x89, 0, 0, 0, 0, 0, 0, 0, 0, 1});
      },
      ThrowsMessage<ParseError>(
          StrEq("at byte offset 100: expected a BER length of 1 to 9 octets, found a first octet for 10 octets")));
  EXPECT_THAT([] { readFrom(Bytes(200, 0xFF)); }, ThrowsMessage<ParseError>(HasSubstr("for 128 octets")));
}

TEST(BERLength, IsRefusedWhenItIsCutShortAtAnyOctet) {
  for (const Sample& sample : kSamples) {
    for (std::size_t size = 0; size < sample.bytes.size(); ++size) {
      const Bytes cut(sample.bytes.begin(), sample.bytes.begin() + static_cast<std::ptrdiff_t>(size));
      EXPECT_THAT([&] { readFrom(cut); }, ThrowsMessage<ParseError>(HasSubstr("at byte offset 100: "))) << size;
    }
  }
  EXPECT_THAT(
      [] {
        readFrom({0x84, 0x01, 0x02});
      },
      ThrowsMessage<ParseError>(HasSubstr("expected a BER length of 5 octets, found 3 octets")));
}

TEST(BERLength, IsWrittenInOneFourOrNineOctetsUnlessAskedOtherwise) {
  EXPECT_EQ(written(0), (Bytes{0x00}));
  EXPECT_EQ(written(127), (Bytes{0x7F}));
  EXPECT_EQ(written(128), (Bytes{0x83, 0x00, 0x00, 0x80}));
  EXPECT_EQ(written(0xFFFFFF), (Bytes{0x83, 0xFF, 0xFF, 0xFF}));
  EXPECT_EQ(written(0x1000000), (Bytes{0x88, 0, 0, 0, 0, 0x01, 0, 0, 0}));
  EXPECT_EQ(written(kMax), (Bytes{0x88, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST(BERLength, TakesTheNextCountThatFitsWhenAskedForTooFewOctets) {
  EXPECT_EQ(written(128, 1), (Bytes{0x81, 0x80}));
  EXPECT_EQ(written(300, 2), (Bytes{0x82, 0x01, 0x2C}));
  EXPECT_EQ(written(0x1000000, 4), (Bytes{0x84, 0x01, 0, 0, 0}));
  EXPECT_EQ(berOctets(kMax, 1), 9);
}

TEST(BERLength, RefusesToWriteMoreThanNineOctets) {
  MemoryDataSink sink;
  EXPECT_THAT([&] { writeBERLength(sink, 1, 10); },
              ThrowsMessage<InvalidLength>(StrEq("expected at most 9 octets for a BER length, found a demand for 10")));
  EXPECT_THROW(berOctets(1, 255), InvalidLength);
  EXPECT_EQ(sink.serializedSize(), 0u);
}

TEST(BERLength, ReadsBackWhatIsWrittenAroundEveryPowerOf256) {
  for (int bits = 0; bits < 64; ++bits) {
    for (const uint64 value : {(uint64{1} << bits) - 1, uint64{1} << bits}) {
      for (uint8 octets = 0; octets <= kMaxBEROctets; ++octets) {
        const Bytes bytes = written(value, octets);
        const BERLength length = readFrom(bytes);
        EXPECT_EQ(length.value, value);
        EXPECT_EQ(length.octets, bytes.size());
      }
    }
  }
}

}  // namespace
}  // namespace Vantor::KLV
