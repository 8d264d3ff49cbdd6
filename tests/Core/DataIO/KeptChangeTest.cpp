#include <gmock/gmock.h>

#include <map>
#include <string>
#include <vector>

#include "Core/DataIO/UndoJournal.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Path.h"
#include "tests/Core/DataIO/FolderTest.h"
#include "tests/Core/DataIO/StoppedProcess.h"

/// Changes that keep their old bytes, and undoing them.
namespace Vantor::DataIO::File {
namespace {

namespace fs = std::filesystem;
using Exceptions::IOError;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StrEq;
using testing::ThrowsMessage;
using testing::UnorderedElementsAre;

class KeptChangeTest : public FolderTest {
 protected:
  void SetUp() override {
    FolderTest::SetUp();
    create(file_ = folder_ / "a.mxf", kBefore);
  }

  /// Writes digits at two places.
  void change(OldBytes oldBytes = OldBytes::kKeep, const std::string& digits = "123") const {
    const Bytes bytes(digits.begin(), digits.end());
    changeInPlace(file_, stateOf(file_), {{3, bytes}, {10, bytes}}, {}, oldBytes);
  }
  std::string kept() const { return contents(undoPath(file_)); }
  std::string reason(const std::string& text) const {
    return "cannot undo the change of '" + Platform::pathToUTF8(fs::canonical(file_)) + "': " + text;
  }
  void expectRefusal(const std::string& text) const {
    const std::string present = contents(file_), bytes = kept();
    EXPECT_THAT([&] { undo(file_); }, ThrowsMessage<IOError>(StrEq(reason(text))));
    EXPECT_EQ(contents(file_), present);
    EXPECT_EQ(kept(), bytes);
    EXPECT_FALSE(hasJournal(file_));
  }

  const std::string kBefore = "abcdefghijklmnopqrst";
  const std::string kAfter = "abc123ghij123nopqrst";
  Path file_;
};

TEST_F(KeptChangeTest, IsUndone) {
  change();
  EXPECT_EQ(contents(file_), kAfter);
  EXPECT_EQ(undoPath(file_), fs::canonical(folder_) / "a.mxf.vantor-undo");
  EXPECT_THAT(names(), UnorderedElementsAre("a.mxf", "a.mxf.vantor-undo"));
  EXPECT_FALSE(hasJournal(file_));
  EXPECT_EQ(recover(file_), Recovery::kNoJournal);
  EXPECT_EQ(undo(file_), Undoing::kUndone);
  EXPECT_EQ(contents(file_), kBefore);
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
  EXPECT_EQ(undo(file_), Undoing::kNothingKept);
}

TEST_F(KeptChangeTest, KeepsNothingUnlessThatIsAskedFor) {
  change(OldBytes::kDrop);
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
  EXPECT_EQ(undo(file_), Undoing::kNothingKept);
  EXPECT_EQ(contents(file_), kAfter);
}

TEST_F(KeptChangeTest, TakesThePlaceOfAnEarlierOne) {
  change();
  change(OldBytes::kKeep, "456");
  EXPECT_EQ(undo(file_), Undoing::kUndone);
  EXPECT_EQ(contents(file_), kAfter);
  EXPECT_EQ(undo(file_), Undoing::kNothingKept);
}

TEST_F(KeptChangeTest, IsNotUndoneBelowALaterOne) {
  change();
  change(OldBytes::kDrop, "456");
  expectRefusal("it was changed once more since, or is another file");
}

TEST_F(KeptChangeTest, IsUndoneInNoOtherFile) {
  change();
  for (std::size_t at = 0; at < kAfter.size(); ++at) {
    std::string other = kAfter;
    other[at] = '#';
    create(file_, other);
    expectRefusal("it was changed once more since, or is another file");
  }
  create(file_, "abcd" + kAfter.substr(4));  // an old byte among the new ones
  expectRefusal("it was changed once more since, or is another file");
  create(file_, kAfter + "more");
  expectRefusal("it has 24 bytes, and had 20 when it was changed");
}

TEST_F(KeptChangeTest, IsUndoneInACopy) {
  change();
  fs::copy_file(file_, folder_ / "b.mxf");
  fs::rename(undoPath(file_), folder_ / "b.mxf.vantor-undo");
  EXPECT_EQ(undo(folder_ / "b.mxf"), Undoing::kUndone);
  EXPECT_EQ(contents(folder_ / "b.mxf"), kBefore);
}

TEST_F(KeptChangeTest, WasUndoneWhereTheFileHasTheOldBytes) {
  change();
  create(file_, kBefore);
  EXPECT_EQ(undo(file_), Undoing::kWasUndone);
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
}

TEST_F(KeptChangeTest, IsNotUndoneByDamagedBytes) {
  change();
  const std::string whole = kept();
  for (std::size_t size = 0; size < whole.size(); ++size) {
    create(undoPath(file_), whole.substr(0, size));
    expectRefusal("'" + Platform::pathToUTF8(undoPath(file_)) + "', which has the old bytes, is damaged");
  }
  for (std::size_t at = 12; at < whole.size(); ++at) {
    std::string changed = whole;
    changed[at] ^= 0x10;
    create(undoPath(file_), changed);
    expectRefusal("'" + Platform::pathToUTF8(undoPath(file_)) + "', which has the old bytes, is damaged");
  }
  create(undoPath(file_), "notes");
  EXPECT_THAT([&] { undo(file_); }, ThrowsMessage<IOError>(HasSubstr("' is no journal of a change; move it away")));
  EXPECT_EQ(kept(), "notes");
}

TEST_F(KeptChangeTest, IsNotUndoneWhileAnotherIsUnderWayOrStopped) {
  change();
  const auto meanwhile = [&](FileUpdate&) {
    EXPECT_THAT([&] { undo(file_); }, ThrowsMessage<IOError>(HasSubstr("another program is changing it")));
  };
  changeInPlace(file_, stateOf(file_), {{0, {'x'}}}, meanwhile);
  create(journalPath(file_), "vantor-j");
  EXPECT_THAT([&] { undo(file_); }, ThrowsMessage<IOError>(HasSubstr("an earlier change was stopped; recover it")));
  EXPECT_EQ(contents(file_), kAfter);
}

TEST_F(KeptChangeTest, IsNotUndoneInAFileThatIsMissingOrHasFurtherNames) {
  EXPECT_THAT([&] { undo(folder_ / "b.mxf"); }, ThrowsMessage<IOError>(HasSubstr("b.mxf': there is no such file")));
  change();
  fs::create_hard_link(file_, folder_ / "b.mxf");
  EXPECT_THAT([&] { undo(file_); }, ThrowsMessage<IOError>(HasSubstr("it has 2 hard links")));
  EXPECT_EQ(contents(file_), kAfter);
}

#ifdef __linux__

TEST_F(KeptChangeTest, IsDoneOrNotAtEverySystemCallAtWhichItIsKilled) {
  std::map<Undoing, int> outcomes;
  auto ending = Ending::kKilled;
  for (int n = 1; ending == Ending::kKilled; ++n) {
    create(file_, kBefore);
    ending = runUntilSystemCall(n, [&] { change(); });
    if (ending == Ending::kNotTraceable) GTEST_SKIP() << "this system does not let a process trace its child";
    ASSERT_NE(ending, Ending::kFailed);
    recover(file_);
    EXPECT_EQ(contents(file_), fs::exists(undoPath(file_)) ? kAfter : kBefore);
    ++outcomes[undo(file_)];
    EXPECT_EQ(contents(file_), kBefore);
    EXPECT_THAT(names(), ElementsAre("a.mxf"));
  }
  EXPECT_GT(outcomes[Undoing::kNothingKept], 5);
  EXPECT_GT(outcomes[Undoing::kUndone], 0);
}

TEST_F(KeptChangeTest, IsUndoneHoweverOftenThatIsKilled) {
  int recovered = 0;
  auto ending = Ending::kKilled;
  for (int n = 1; ending == Ending::kKilled; ++n) {
    create(file_, kBefore);
    change();
    ending = runUntilSystemCall(n, [&] { undo(file_); });
    if (ending == Ending::kNotTraceable) GTEST_SKIP() << "this system does not let a process trace its child";
    ASSERT_NE(ending, Ending::kFailed);
    if (recover(file_) == Recovery::kRestored) {
      ++recovered;
    } else {
      undo(file_);
    }
    EXPECT_EQ(contents(file_), kBefore) << n;
    EXPECT_THAT(names(), ElementsAre("a.mxf"));
  }
  EXPECT_EQ(ending, Ending::kFinished);
  EXPECT_GT(recovered, 5);
}

#endif

}  // namespace
}  // namespace Vantor::DataIO::File
