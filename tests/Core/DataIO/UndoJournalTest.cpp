#include "Core/DataIO/UndoJournal.h"

#include <gmock/gmock.h>

#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "Core/DataIO/Crc64.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Path.h"
#include "tests/Core/DataIO/FolderTest.h"
#include "tests/Core/DataIO/StoppedProcess.h"
#include "tests/Core/Platform/ThisSystem.h"

namespace Vantor::DataIO::File {
namespace {

namespace fs = std::filesystem;
using Exceptions::IOError;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StrEq;
using testing::ThrowsMessage;
using testing::UnorderedElementsAre;

const std::string kOld = "0123456789ABCDEFGHIJ";
const std::string kNew = "01xxxx6789ABCDEFGyyy";

Bytes bytesIn(const std::string& text) { return {text.begin(), text.end()}; }

const std::vector<NewBytes> kChanges = {{2, bytesIn("xxxx")}, {17, bytesIn("yyy")}};

/// Writes in several steps, so that a change can be stopped within a place.
void writeNew(FileUpdate& file) {
  for (const auto& change : kChanges) {
    for (std::size_t i = 0; i < change.bytes.size(); ++i) file.write(change.offset + i, &change.bytes[i], 1);
  }
}

class UndoJournalTest : public FolderTest {
 protected:
  void SetUp() override {
    FolderTest::SetUp();
    create(file_ = folder_ / "a.mxf", kOld);
  }

  void change(const std::function<void(FileUpdate&)>& change = writeNew) {
    changeInPlace(file_, stateOf(file_), kChanges, change);
  }

  /// The complete journal of the change, as a stopped process leaves it.
  std::string journalOfStoppedChange() {
    std::string bytes;
    EXPECT_THROW(change([&](FileUpdate& file) {
                   bytes = contents(journalPath(file.path()));
                   throw std::runtime_error("stop");
                 }),
                 IOError);
    return bytes;
  }

  Path file_;
};

std::string number(uint64 value, std::size_t size) {
  std::string text;
  for (std::size_t i = size; i-- > 0;) text += static_cast<char>(value >> 8 * i & 0xFFU);
  return text;
}

TEST_F(UndoJournalTest, ChangesTheFileAndLeavesNothingBeside) {
  changeInPlace(file_, stateOf(file_), kChanges);
  EXPECT_EQ(contents(file_), kNew);
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
  EXPECT_EQ(recover(file_), Recovery::kNoJournal);
  EXPECT_EQ(contents(file_), kNew);
}

/// The check of a file that is smaller than a sample.
std::string surroundings(const std::string& blanked) {
  Crc64 check;
  for (int i = 0; i < 16; ++i) check.write(reinterpret_cast<const uint8*>(blanked.data()), blanked.size());
  return number(check.value(), 8);
}

TEST_F(UndoJournalTest, HasOldAndNewBytesBesideTheFileWhileItIsChanged) {
  change([&](FileUpdate& file) {
    EXPECT_EQ(file.path(), fs::canonical(file_));
    EXPECT_THAT(names(), UnorderedElementsAre("a.mxf", "a.mxf.vantor-journal"));
    const std::string bytes = contents(folder_ / "a.mxf.vantor-journal");
    EXPECT_EQ(bytes.substr(0, bytes.size() - 8), "vantor-j" + number(2, 4) + number(2, 4) + number(20, 8) +  //
                                                     surroundings({"01\0\0\0\0"
                                                                   "6789ABCDEFG\0\0\0",
                                                                   20}) +  //
                                                     number(2, 8) +
                                                     number(4, 8) + "2345xxxx" +  //
                                                     number(17, 8) + number(3, 8) + "HIJyyy");
    writeNew(file);
  });
  EXPECT_EQ(contents(file_), kNew);
}

TEST_F(UndoJournalTest, RefusesAFileThatIsBeingChanged) {
  change([&](FileUpdate& file) {
    const std::string journal = contents(journalPath(file_));
    for (const auto& second : std::vector<std::function<void()>>{[&] { recover(file_); }, [&] { change(); }}) {
      EXPECT_THAT(second, ThrowsMessage<IOError>(HasSubstr("another program is changing it at the moment")));
      EXPECT_EQ(contents(journalPath(file_)), journal);
      EXPECT_EQ(contents(file_), kOld);
    }
    writeNew(file);
  });
  EXPECT_EQ(contents(file_), kNew);
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
}

TEST_F(UndoJournalTest, LooksForNoJournalThatWouldHaveTooLongAName) {
  const Path longName = folder_ / std::string(250, 'x');
  fs::rename(file_, longName);
  EXPECT_FALSE(hasJournal(longName));
  EXPECT_EQ(recover(longName), Recovery::kNoJournal);
  EXPECT_THAT([&] { changeInPlace(longName, stateOf(longName), kChanges); },
              ThrowsMessage<IOError>(HasSubstr(ThisSystem::kNameTooLong)));
  EXPECT_EQ(contents(longName), kOld);
}

TEST_F(UndoJournalTest, PutsTheOldBytesBackWhenTheChangeThrows) {
  const auto halfAChange = [](FileUpdate& file) {
    file.write(2, reinterpret_cast<const uint8*>("xx"), 2);
    throw std::runtime_error("the other half is missing");
  };
  EXPECT_THAT([&] { change(halfAChange); },
              ThrowsMessage<IOError>(StrEq("the other half is missing; the file is as it was")));
  EXPECT_EQ(contents(file_), kOld);
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
}

TEST_F(UndoJournalTest, TellsWhenTheOldBytesCannotBePutBack) {
  const auto cutOff = [&](FileUpdate&) {
    fs::resize_file(file_, 18);
    throw std::runtime_error("failed");
  };
  EXPECT_THAT([&] { change(cutOff); },
              ThrowsMessage<IOError>(HasSubstr("failed; recover the file before anything else, as that has failed: ")));
  EXPECT_TRUE(hasJournal(file_));
  EXPECT_THAT([&] { recover(file_); }, ThrowsMessage<IOError>(HasSubstr("it has 18 bytes, and had 20")));
  create(file_, "01x" + kOld.substr(3));
  EXPECT_EQ(recover(file_), Recovery::kRestored);
  EXPECT_EQ(contents(file_), kOld);
}

TEST_F(UndoJournalTest, TellsWhenTheChangeIsDoneButTheJournalCannotBeRemoved) {
  const auto obstruct = [&](FileUpdate& file) {
    writeNew(file);
    fs::remove(journalPath(file_));
    fs::create_directories(journalPath(file_) / "sub");
  };
  EXPECT_THAT([&] { change(obstruct); },
              ThrowsMessage<IOError>(AllOf(HasSubstr("has been changed, but has its journal still: "),
                                           HasSubstr("remove the journal to keep the change"))));
  EXPECT_EQ(contents(file_), kNew);
}

TEST_F(UndoJournalTest, RefusesAFileWhoseChangeWasStopped) {
  create(journalPath(file_), "vantor-j");
  EXPECT_TRUE(hasJournal(file_));
  EXPECT_THAT([&] { change(); }, ThrowsMessage<IOError>(HasSubstr("an earlier change was stopped; recover it first")));
  EXPECT_EQ(contents(file_), kOld);
}

TEST_F(UndoJournalTest, RefusesAFileThatAnotherProgramChanged) {
  const FileState state = stateOf(file_);
  create(file_, kOld + "more");
  EXPECT_THAT([&] { changeInPlace(file_, state, kChanges); },
              ThrowsMessage<IOError>(HasSubstr("another program has changed it meanwhile")));
  EXPECT_EQ(contents(file_), kOld + "more");
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
}

TEST_F(UndoJournalTest, RefusesFilesWithFurtherNamesAndReadOnlyOnes) {
  fs::create_hard_link(file_, folder_ / "b.mxf");
  EXPECT_THAT([&] { change(); }, ThrowsMessage<IOError>(HasSubstr("it has 2 hard links")));
  fs::remove(folder_ / "b.mxf");
  fs::permissions(file_, fs::perms::owner_read);
  EXPECT_THAT([&] { change(); }, ThrowsMessage<IOError>(AllOf(HasSubstr("a.mxf"), HasSubstr("it is read-only"))));
  EXPECT_EQ(contents(file_), kOld);
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
}

TEST_F(UndoJournalTest, FollowsSymbolicLinks) {
  if (!ThisSystem::hasSymbolicLinks(folder_)) GTEST_SKIP() << ThisSystem::kNoSymbolicLinks;
  fs::create_directory(folder_ / "sub");
  fs::rename(file_, folder_ / "sub" / "real.mxf");
  fs::create_symlink(Path("sub") / "real.mxf", file_);
  EXPECT_EQ(journalPath(file_), fs::canonical(folder_) / "sub" / "real.mxf.vantor-journal");
  change();
  EXPECT_TRUE(fs::is_symlink(file_));
  EXPECT_EQ(contents(folder_ / "sub" / "real.mxf"), kNew);
}

/// The starts of a journal, as they are and with zeros up to its length.
std::vector<std::string> halvesOf(const std::string& journal) {
  std::vector<std::string> halves;
  for (std::size_t size = 0; size < journal.size(); ++size) {
    halves.push_back(journal.substr(0, size));
    halves.push_back(journal.substr(0, size) + std::string(journal.size() - size, 0));
    if (halves.back() == journal) halves.pop_back();  // its last byte may be zero
  }
  return halves;
}

TEST_F(UndoJournalTest, RemovesAJournalWhoseWritingWasStopped) {
  const Path unfinished = folder_ / "a.mxf.vantor-journal.tmp";
  for (const std::string& half : halvesOf(journalOfStoppedChange())) {
    create(unfinished, half);
    EXPECT_FALSE(hasJournal(file_));
    EXPECT_EQ(recover(file_), Recovery::kNeverBegun) << half.size();
    EXPECT_EQ(contents(file_), kOld);
    EXPECT_THAT(names(), ElementsAre("a.mxf"));
  }
  create(unfinished, "vantor-j");
  change();
  EXPECT_EQ(contents(file_), kNew);
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
}

TEST_F(UndoJournalTest, KeepsAJournalThatIsNotWholeWhateverTheFileLooksLike) {
  const std::size_t firstOldByte = 8 + 4 + 4 + 8 + 8 + 8 + 8;
  for (const std::string& half : halvesOf(journalOfStoppedChange())) {
    for (const std::string& present : {kOld, "01x" + kOld.substr(3), kNew}) {
      create(file_, present);
      create(journalPath(file_), half);
      const bool hasBytesLeft = present == kOld || half.size() <= firstOldByte || half[firstOldByte] == 0;
      EXPECT_THAT([&] { recover(file_); },
                  ThrowsMessage<IOError>(AllOf(
                      HasSubstr(hasBytesLeft ? "its journal is damaged; the file has the old bytes that are left there"
                                             : "its journal is damaged, and the file may be half changed"),
                      HasSubstr("; to keep it as it is, remove the journal '"))))
          << half.size() << present;
      EXPECT_EQ(contents(journalPath(file_)), half);
      EXPECT_EQ(contents(file_), present);
    }
  }
}

TEST_F(UndoJournalTest, KeepsAJournalWithAChangedByteBesideAFileThatIsChanged) {
  const std::string whole = journalOfStoppedChange();
  for (const std::string& present : {kNew, "01x" + kOld.substr(3), kOld.substr(0, 17) + "yyy"}) {
    create(file_, present);
    for (std::size_t at = 12; at < whole.size(); ++at) {
      std::string changed = whole;
      changed[at] ^= 0x01;
      create(journalPath(file_), changed);
      EXPECT_THAT([&] { recover(file_); }, ThrowsMessage<IOError>(HasSubstr("its journal is damaged"))) << at;
      EXPECT_EQ(contents(journalPath(file_)), changed);
      EXPECT_EQ(contents(file_), present);
    }
  }
}

TEST_F(UndoJournalTest, NeverWritesByAJournalWithAChangedByte) {
  const std::string whole = journalOfStoppedChange();
  for (std::size_t at = 32; at < whole.size(); ++at) {
    std::string changed = whole;
    changed[at] ^= 0x01;
    create(journalPath(file_), changed);
    EXPECT_THAT([&] { recover(file_); }, ThrowsMessage<IOError>(HasSubstr("its journal is damaged"))) << at;
    EXPECT_EQ(contents(file_), kOld);
  }
}

TEST_F(UndoJournalTest, PutsBackWhateverMixOfOldAndNewBytesWasWritten) {
  const std::string whole = journalOfStoppedChange();
  const std::vector<std::size_t> changed = {2, 3, 4, 5, 17, 18, 19};
  for (unsigned mix = 0; mix < 1U << changed.size(); ++mix) {
    std::string present = kOld;
    for (std::size_t i = 0; i < changed.size(); ++i) {
      if ((mix >> i & 1U) != 0) present[changed[i]] = kNew[changed[i]];
    }
    fs::remove(file_);  // a copy will do
    create(file_, present);
    create(journalPath(file_), whole);
    EXPECT_EQ(recover(file_), Recovery::kRestored);
    EXPECT_EQ(contents(file_), kOld);
  }
}

TEST_F(UndoJournalTest, IsBelievedForNoOtherFileOfTheSameSize) {
  const std::string whole = journalOfStoppedChange();
  create(journalPath(file_), whole);
  for (const std::string& start : {kOld, kNew}) {
    for (std::size_t at = 0; at < start.size(); ++at) {
      std::string other = start;
      other[at] = '#';
      create(file_, other);
      EXPECT_THAT(
          [&] { recover(file_); },
          ThrowsMessage<IOError>(
              AllOf(HasSubstr("it is not the file whose change was stopped, or was changed since; to keep it as it is"),
                    HasSubstr("remove the journal '" + Platform::pathToUTF8(journalPath(file_)) + "'"))))
          << at;
      EXPECT_EQ(contents(file_), other);
      EXPECT_EQ(contents(journalPath(file_)), whole);
    }
  }
}

TEST_F(UndoJournalTest, IsBelievedForNoPlaceThatGoesPastTheEndOfTheFile) {
  for (const uint64 offset : {uint64{17}, uint64{20}, ~uint64{0}}) {
    const std::string content = "vantor-j" + number(2, 4) + number(1, 4) + number(20, 8) + surroundings(kOld) +
                                number(offset, 8) + number(4, 8) + "2345xxxx";
    Crc64 check;
    check.write(reinterpret_cast<const uint8*>(content.data()), content.size());
    create(journalPath(file_), content + number(check.value(), 8));
    EXPECT_THAT([&] { recover(file_); },
                ThrowsMessage<IOError>(HasSubstr("it is not the file whose change was stopped, or was changed since")));
    EXPECT_EQ(contents(file_), kOld);
  }
}

TEST_F(UndoJournalTest, TellsLargeFilesApartByTheirStartTheirEndAndWhatIsBetween) {
  const std::string large = kOld + std::string(1 << 20, '.');
  create(file_, large);
  const std::string whole = journalOfStoppedChange();
  const uint64 last = large.size() - 8192;
  for (const uint64 at :
       {uint64{20}, last - last / 15 * 14 + 8191, last - last / 15 * 7, last, uint64{large.size() - 1}}) {
    std::string other = large;
    other[at] = '#';
    create(file_, other);
    create(journalPath(file_), whole);
    EXPECT_THROW(recover(file_), IOError) << at;
    EXPECT_EQ(contents(file_), other);
  }
  create(file_, kNew + std::string(1 << 20, '.'));
  EXPECT_EQ(recover(file_), Recovery::kRestored);
  EXPECT_EQ(contents(file_), large);
}

TEST_F(UndoJournalTest, RemovesNoFileThatIsNoJournalOrALaterOne) {
  for (const std::string& other :
       {std::string("notes"), "vantor-j" + number(1, 4) + "anything", "vantor-j" + number(4, 4) + "anything"}) {
    create(journalPath(file_), other);
    EXPECT_THROW(recover(file_), IOError);
    EXPECT_EQ(contents(journalPath(file_)), other);
  }
}

TEST_F(UndoJournalTest, RecoversOnceAndThenFindsNothingToDo) {
  const std::string whole = journalOfStoppedChange();
  create(file_, kNew);
  create(journalPath(file_), whole);
  EXPECT_EQ(recover(file_), Recovery::kRestored);
  EXPECT_EQ(contents(file_), kOld);
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
  EXPECT_EQ(recover(file_), Recovery::kNoJournal);
}

TEST_F(UndoJournalTest, DistinguishesAChangeUnderWayFromAStoppedOne) {
  EXPECT_EQ(openChange(file_), OpenChange::kNone);
  EXPECT_NO_THROW(requireNoOpenChange(file_, "cannot edit"));
  change([&](FileUpdate& file) {
    EXPECT_EQ(openChange(file_), OpenChange::kUnderWay);
    EXPECT_THAT([&] { requireNoOpenChange(file_, "cannot edit"); },
                ThrowsMessage<IOError>(StrEq("cannot edit '" + Platform::pathToUTF8(file_) +
                                             "': another program is changing it at the moment; try again later")));
    writeNew(file);
  });
  EXPECT_EQ(openChange(file_), OpenChange::kNone);
  create(journalPath(file_), journalOfStoppedChange());
  EXPECT_EQ(openChange(file_), OpenChange::kStopped);
  EXPECT_THAT([&] { requireNoOpenChange(file_, "cannot edit"); },
              ThrowsMessage<IOError>(StrEq("cannot edit '" + Platform::pathToUTF8(file_) +
                                           "': an earlier change of it was stopped half-way; recover it first")));
}

#ifdef __linux__

TEST_F(UndoJournalTest, RecoversNoFileThatIsMissing) {
  const std::string journal = journalOfStoppedChange();
  fs::remove(file_);
  EXPECT_THAT([&] { recover(file_); }, ThrowsMessage<IOError>(HasSubstr("a.mxf': there is no such file")));
  EXPECT_THAT([&] { recover(folder_); }, ThrowsMessage<IOError>(HasSubstr("': it is no regular file")));
  create(journalPath(file_), journal);
  EXPECT_THAT([&] { recover(file_); },
              ThrowsMessage<IOError>(AllOf(HasSubstr("a.mxf': the file is gone; put it back, or remove '"),
                                           HasSubstr("a.mxf.vantor-journal', which has old bytes of it"))));
  EXPECT_EQ(contents(journalPath(file_)), journal);
  EXPECT_FALSE(fs::exists(file_));
}

/// What a killed change left, and the result of recover().
enum class Outcome { kOldWithoutJournal, kNeverBegun, kRestored, kNewWithoutJournal };

class KilledChangeTest : public UndoJournalTest {
 protected:
  Outcome recovered() {
    const Recovery recovery = recover(file_);
    const std::string bytes = contents(file_);
    EXPECT_EQ(recover(file_), Recovery::kNoJournal);
    EXPECT_THAT(names(), ElementsAre("a.mxf"));
    if (recovery == Recovery::kNoJournal && bytes == kNew) return Outcome::kNewWithoutJournal;
    EXPECT_EQ(bytes, kOld);
    if (recovery == Recovery::kNoJournal) return Outcome::kOldWithoutJournal;
    return recovery == Recovery::kRestored ? Outcome::kRestored : Outcome::kNeverBegun;
  }
};

TEST_F(KilledChangeTest, IsUndoneOrDoneAtEverySystemCall) {
  std::map<Outcome, int> outcomes;
  Ending ending = Ending::kKilled;
  for (int n = 1; ending == Ending::kKilled; ++n) {
    create(file_, kOld);
    ending = runUntilSystemCall(n, [&] { change(); });
    if (ending == Ending::kNotTraceable) GTEST_SKIP() << "this system does not let a process trace its child";
    ASSERT_NE(ending, Ending::kFailed);
    ++outcomes[recovered()];
  }
  for (const auto outcome :
       {Outcome::kOldWithoutJournal, Outcome::kNeverBegun, Outcome::kRestored, Outcome::kNewWithoutJournal}) {
    EXPECT_GT(outcomes[outcome], 0) << static_cast<int>(outcome);
  }
}

TEST_F(KilledChangeTest, IsRecoveredHoweverOftenTheRecoveryIsKilled) {
  const std::string whole = journalOfStoppedChange();
  create(file_, kNew);
  create(journalPath(file_), whole);
  Ending ending = Ending::kKilled;
  for (int n = 1; ending == Ending::kKilled; ++n) {
    ending = runUntilSystemCall(n, [&] { recover(file_); });
    if (ending == Ending::kNotTraceable) GTEST_SKIP() << "this system does not let a process trace its child";
    EXPECT_TRUE(hasJournal(file_) || contents(file_) == kOld) << n;
  }
  EXPECT_EQ(ending, Ending::kFinished);
  EXPECT_EQ(contents(file_), kOld);
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
}

TEST_F(UndoJournalTest, LeavesTheFileAloneWhenTheDiskHasNoRoomForTheJournal) {
  EXPECT_EQ(runWithFileSizeLimit(40, [&] { change(); }), Ending::kFailed);
  EXPECT_EQ(contents(file_), kOld);
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
}

TEST_F(UndoJournalTest, GoesBackWhenTheDiskDoesNotTakeTheSecondPlace) {
  const std::string padding(4096, '.');
  create(file_, kOld + padding + "end");
  const std::vector<NewBytes> changes = {{2, bytesIn("xxxx")}, {kOld.size() + padding.size(), bytesIn("yyy")}};
  const auto writeBoth = [&](FileUpdate& file) {
    file.write(2, reinterpret_cast<const uint8*>("xxxx"), 4);
    EXPECT_NE(contents(file_), kOld + padding + "end");
    file.write(changes[1].offset, reinterpret_cast<const uint8*>("yyy"), 3);
  };
  EXPECT_EQ(runWithFileSizeLimit(1024, [&] { changeInPlace(file_, stateOf(file_), changes, writeBoth); }),
            Ending::kFailed);
  EXPECT_EQ(contents(file_), kOld + padding + "end");
  EXPECT_THAT(names(), ElementsAre("a.mxf"));
}

#endif

}  // namespace
}  // namespace Vantor::DataIO::File
