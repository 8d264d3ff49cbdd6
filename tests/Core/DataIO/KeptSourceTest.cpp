#include "Core/DataIO/KeptSource.h"

#include <gmock/gmock.h>

#include "Core/DataIO/Memory.h"
#include "Core/Platform/Exceptions.h"
#include "tests/Core/DataIO/ReceivedBytes.h"

namespace Vantor::DataIO {
namespace {

using testing::ElementsAre;
using testing::StrEq;
using testing::ThrowsMessage;

Bytes readOf(DataSource& source, std::size_t size) {
  Bytes bytes(size);
  bytes.resize(source.readUpTo(bytes.data(), size));
  return bytes;
}

TEST(KeptSource, ReadsAgainWhatItHasRead) {
  ReceivedBytes pipe({1, 2, 3, 4, 5, 6, 7}, 2);
  KeptSource source(pipe);
  EXPECT_THAT(readOf(source, 3), ElementsAre(1, 2, 3));
  source.rewind();
  EXPECT_EQ(source.position(), 0u);
  EXPECT_THAT(readOf(source, 5), ElementsAre(1, 2, 3, 4, 5));
  EXPECT_EQ(pipe.position(), 5u);
  EXPECT_THAT(readOf(source, 5), ElementsAre(6, 7));
}

TEST(KeptSource, GoesBackAndOn) {
  ReceivedBytes pipe({1, 2, 3, 4, 5, 6, 7}, 2);
  KeptSource source(pipe);
  EXPECT_TRUE(source.goTo(4));
  EXPECT_THAT(readOf(source, 2), ElementsAre(5, 6));
  EXPECT_TRUE(source.goTo(1));
  EXPECT_THAT(readOf(source, 2), ElementsAre(2, 3));
  EXPECT_TRUE(source.goTo(7));
  EXPECT_FALSE(source.goTo(8));
  EXPECT_EQ(source.position(), 7u);
  EXPECT_TRUE(source.goTo(0));
  EXPECT_THAT(readOf(source, 9), ElementsAre(1, 2, 3, 4, 5, 6, 7));
}

TEST(KeptSource, DoesNotKeepWhatIsSkipped) {
  ReceivedBytes pipe({1, 2, 3, 4, 5, 6, 7});
  KeptSource source(pipe);
  source.skip(2);
  EXPECT_THAT(readOf(source, 2), ElementsAre(3, 4));
  source.skip(1);
  EXPECT_THAT(readOf(source, 1), ElementsAre(6));
  source.rewind();
  source.skip(3);
  EXPECT_THAT(readOf(source, 1), ElementsAre(4));
  EXPECT_THAT([&] { readOf(source, 1); },
              ThrowsMessage<Exceptions::IOError>(
                  StrEq("at byte offset 4: these bytes were skipped, and cannot be read any more")));
  source.skip(2);
  EXPECT_THAT(readOf(source, 1), ElementsAre(7));
}

TEST(KeptSource, StandsAtTheEndBehindASkipThatRunsPastIt) {
  ReceivedBytes pipe({1, 2, 3});
  KeptSource source(pipe);
  EXPECT_THROW(source.skip(9), Exceptions::ParseError);
  EXPECT_THAT(readOf(source, 1), ElementsAre());
  source.rewind();
  EXPECT_THROW(source.skip(9), Exceptions::ParseError);
  EXPECT_EQ(source.position(), 3u);
}

TEST(KeptSource, NamesWhatIsMissing) {
  ReceivedBytes pipe({1, 2, 3});
  KeptSource source(pipe);
  uint8 bytes[4];
  EXPECT_THAT([&] { source.read(bytes, 4); },
              ThrowsMessage<Exceptions::ParseError>(StrEq("at byte offset 0: expected 4 more bytes, found 3")));
  EXPECT_EQ(source.remaining(), kUnknownSize);
}

TEST(KeptSource, KnowsWhatIsLeftOfASourceThatDoes) {
  const Bytes bytes = {1, 2, 3, 4};
  Memory::MemoryDataSource memory(bytes.data(), bytes.size());
  KeptSource source(memory);
  readOf(source, 3);
  EXPECT_EQ(source.remaining(), 1u);
  source.rewind();
  EXPECT_EQ(source.remaining(), 4u);
}

}  // namespace
}  // namespace Vantor::DataIO
