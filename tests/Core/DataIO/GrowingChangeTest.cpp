#include <gmock/gmock.h>

#include <fstream>
#include <string>
#include <vector>

#include "Core/DataIO/UndoJournal.h"
#include "Core/Platform/Exceptions.h"
#include "tests/Core/DataIO/FolderTest.h"
#include "tests/Core/DataIO/StoppedProcess.h"

namespace Vantor::DataIO::File {
namespace {

using Exceptions::IOError;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::ThrowsMessage;

const std::string kBefore = "0123456789ABCDEFGHIJ";
const std::string kAfter = "01xxxx6789ABCDEFGyyy";
const std::string kMore = "more";

Bytes octets(const std::string& text) { return {text.begin(), text.end()}; }

/// Changes of a file to which its writer appends.
class GrowingChange : public FolderTest {
 protected:
  void SetUp() override {
    FolderTest::SetUp();
    create(file(), kBefore);
  }
  Path file() const { return folder_ / "a.mxf"; }
  void append() const { std::ofstream(file(), std::ios::binary | std::ios::app) << kMore; }

  void change(const FileState& expected, OldBytes oldBytes = OldBytes::kDrop) const {
    changeGrowingFile(file(), expected, {{2, octets("xxxx")}, {17, octets("yyy")}}, {octets("2345"), octets("HIJ")},
                      oldBytes);
  }
};

TEST_F(GrowingChange, IsMadeInAFileThatHasGrown) {
  const auto expected = stateOf(file());
  append();
  change(expected);
  EXPECT_EQ(contents(file()), kAfter + kMore);
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
}

TEST_F(GrowingChange, IsRefusedWhereOtherBytesAreInItsPlaces) {
  const auto expected = stateOf(file());
  create(file(), "0123456789ABCDEFGH.J");
  EXPECT_THAT([&] { change(expected); },
              ThrowsMessage<IOError>(
                  HasSubstr("another program has changed the bytes from offset 17 on meanwhile; begin anew")));
  EXPECT_EQ(contents(file()), "0123456789ABCDEFGH.J");
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
}

TEST_F(GrowingChange, IsRefusedInAShorterFileAndInAnother) {
  const auto expected = stateOf(file());
  std::filesystem::resize_file(file(), 19);
  EXPECT_THAT([&] { change(expected); },
              ThrowsMessage<IOError>(HasSubstr("another program has replaced or shortened it meanwhile")));
  create(folder_ / "b.mxf", kBefore + kMore);
  std::filesystem::rename(folder_ / "b.mxf", file());
  EXPECT_THROW(change(expected), IOError);
  EXPECT_EQ(contents(file()), kBefore + kMore);
}

TEST_F(GrowingChange, CanBeUndoneInAFileThatHasGrown) {
  append();
  change(stateOf(file()), OldBytes::kKeep);
  append();
  EXPECT_EQ(undo(file()), Undoing::kUndone);
  EXPECT_EQ(contents(file()), kBefore + kMore + kMore);
}

TEST_F(GrowingChange, CannotBeUndoneInAFileThatHasBecomeShorter) {
  append();
  change(stateOf(file()), OldBytes::kKeep);
  std::filesystem::resize_file(file(), 20);
  EXPECT_THROW(undo(file()), IOError);
  EXPECT_EQ(contents(file()), kAfter);
}

TEST_F(GrowingChange, IsUndoneOrDoneWhereverItIsKilledAndTheFileGrows) {
  int restored = 0;
  Ending ending = Ending::kKilled;
  for (int n = 1; ending == Ending::kKilled; ++n) {
    create(file(), kBefore);
    ending = runUntilSystemCall(n, [&] { change(stateOf(file())); });
    if (ending == Ending::kNotTraceable) GTEST_SKIP() << "this system does not let a process trace its child";
    ASSERT_NE(ending, Ending::kFailed);
    append();
    if (recover(file()) == Recovery::kRestored) ++restored;
    const auto bytes = contents(file());
    EXPECT_TRUE(bytes == kBefore + kMore || bytes == kAfter + kMore) << n << ": " << bytes;
    EXPECT_THAT(names(), ElementsAre("a.mxf"));
  }
  EXPECT_EQ(contents(file()), kAfter + kMore);
  EXPECT_GT(restored, 2);
}

}  // namespace
}  // namespace Vantor::DataIO::File
