#include "Core/DataIO/ForwardSource.h"

#include <gmock/gmock.h>

#include "Core/KLV/Value.h"
#include "Core/Platform/Exceptions.h"
#include "tests/Core/DataIO/ReceivedBytes.h"

namespace Vantor::DataIO {
namespace {

using Exceptions::ParseError;
using testing::ElementsAre;
using testing::StrEq;
using testing::ThrowsMessage;

TEST(ForwardSource, ReadsOnUntilItHasWhatIsAskedFor) {
  ReceivedBytes source({1, 2, 3, 4, 5, 6, 7}, 2);
  uint8 read[5] = {};
  source.read(read, 5);
  EXPECT_THAT(read, ElementsAre(1, 2, 3, 4, 5));
  EXPECT_EQ(source.position(), 5u);
  EXPECT_EQ(source.remaining(), kUnknownSize);
}

TEST(ForwardSource, ReadsWhatIsLeftAtTheEnd) {
  ReceivedBytes source({1, 2, 3}, 2);
  uint8 read[5] = {};
  EXPECT_EQ(source.readUpTo(read, 5), 3u);
  EXPECT_THAT(read, ElementsAre(1, 2, 3, 0, 0));
  EXPECT_EQ(source.readUpTo(read, 5), 0u);
}

TEST(ForwardSource, SkipsByReading) {
  ReceivedBytes source(Bytes(10000, 7), 3000);
  source.skip(9999);
  EXPECT_EQ(source.position(), 9999u);
  EXPECT_THAT([&] { source.skip(2); },
              ThrowsMessage<ParseError>(StrEq("at byte offset 9999: expected 2 more bytes, found 1")));
}

TEST(ForwardSource, NamesOffsetDemandAndRestWhenItEnds) {
  ReceivedBytes source({1, 2, 3});
  uint8 read[2];
  source.read(read, 2);
  EXPECT_THAT([&] { source.read(read, 2); },
              ThrowsMessage<ParseError>(StrEq("at byte offset 2: expected 2 more bytes, found 1")));
}

TEST(ForwardSource, MakesAValueTakeNoMemoryForBytesThatNeverArrive) {
  ReceivedBytes source(Bytes(3 << 20, 1), 1 << 20);
  // A size that the address space could hold.
  EXPECT_THROW(KLV::Value(source, uint64{1} << (8 * sizeof(std::size_t) - 4)), ParseError);
  EXPECT_EQ(source.position(), 3u << 20);
  ReceivedBytes whole(Bytes(3 << 20, 1), 1 << 20);
  EXPECT_EQ(KLV::Value(whole, 3 << 20).bytes(), Bytes(3 << 20, 1));
}

}  // namespace
}  // namespace Vantor::DataIO
