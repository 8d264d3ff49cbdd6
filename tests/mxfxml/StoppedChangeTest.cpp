#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "Program.h"
#include "StoppedSample.h"

/// What commands do with a file that a change in place left half-way, with its journal beside it.
namespace Vantor::Tool {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

class StoppedChangeTest : public testing::Test, protected StoppedSample {
 protected:
  std::string document() const { return folder_.path("a.xml"); }
  std::string copy() const { return folder_.path("b.mxf"); }

  /// An export in which a track has another number.
  void writeEditedDocument() const {
    std::string xml = run({"export", sample(kSample)}).out;
    const std::string track = "<rp210:TrackID>1<";
    writeFile(document(), xml.replace(xml.find(track), track.size(), "<rp210:TrackID>9<"));
  }

  /// What the whole original becomes by the edited document.
  std::string expected() const {
    const ScratchFolder elsewhere;
    const std::string target = elsewhere.path("expected.mxf");
    EXPECT_EQ(run({"import", document(), "--into", sample(kSample), "-o", target}).exitCode, 0);
    return readFile(target);
  }

  /// The command changes neither file nor journal, and leaves nothing else.
  void expectRefusal(const std::vector<std::string>& command, const std::string& message) const {
    const auto before = std::pair(readFile(path()), readFile(journal()));
    const auto files = folder_.files();
    const Result result = run(command);
    EXPECT_EQ(result.exitCode, command[0] == "diff" || command[0] == "check" ? 2 : 1) << command[0];
    EXPECT_EQ(result.out, "") << command[0];
    EXPECT_EQ(result.err, "mxfxml: " + message + "\n");
    EXPECT_TRUE(std::pair(readFile(path()), readFile(journal())) == before) << command[0];
    EXPECT_EQ(folder_.files(), files);
  }
  std::string refusal() const {
    return path() + ": a change of the file was stopped half-way; mxfxml recover " + path() + " undoes it";
  }
  std::string undone() const { return "mxfxml: " + path() + ": a change that was stopped half-way is undone\n"; }
};

TEST_F(StoppedChangeTest, IsUndoneBeforeAPropertyIsSet) {
  stopAChange();
  const Result result = run({"set", path(), "Preface.ByteOrder=18761"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, undone());
  EXPECT_THAT(run({"diff", sample(kSample), path()}).out,
              HasSubstr("sets compared 19, different 1; properties compared 116, different 1\n"));
  EXPECT_THAT(folder_.files(), ElementsAre("a.mxf"));
}

TEST_F(StoppedChangeTest, IsUndoneBeforeADocumentIsPutIn) {
  writeEditedDocument();
  stopAChange();
  const Result result = run({"import", document(), "--into", path(), "--in-place"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, undone());
  EXPECT_TRUE(readFile(path()) == expected());
  EXPECT_THAT(folder_.files(), ElementsAre("a.mxf", "a.xml"));
}

TEST_F(StoppedChangeTest, IsTouchedByNoEditThatWritesACopyOrNothing) {
  writeEditedDocument();
  stopAChange();
  for (const std::vector<std::string>& target : {std::vector<std::string>{"-o", copy()}, {"--dry-run"}}) {
    for (std::vector<std::string> command :
         {std::vector<std::string>{"set", path(), "Preface.ByteOrder=1"}, {"import", document(), "--into", path()}}) {
      command.insert(command.end(), target.begin(), target.end());
      expectRefusal(command, refusal());
    }
  }
}

TEST_F(StoppedChangeTest, IsTouchedByNoCommandThatOnlyReads) {
  stopAChange();
  for (const std::string command : {"export", "verify", "info"}) expectRefusal({command, path()}, refusal());
  expectRefusal({"diff", path(), sample(kSample)}, refusal());
  expectRefusal({"diff", sample(kSample), path()}, refusal());
}

TEST_F(StoppedChangeTest, IsNotUndoneByACommandThatIsWrong) {
  stopAChange();
  const std::string before = readFile(path());
  EXPECT_EQ(run({"set", path(), "Preface"}).exitCode, 2);
  EXPECT_TRUE(readFile(path()) == before);
  EXPECT_TRUE(fs::exists(journal()));
}

TEST_F(StoppedChangeTest, LeavesAFileAloneThatHasAnotherSizeOrIsReadOnly) {
  writeEditedDocument();
  stopAChange();
  const std::string whole = readFile(path());
  const std::string start = "a change that was stopped half-way cannot be undone: cannot ";
  const std::string real = fs::canonical(path()).string();
  writeFile(path(), whole + "more");
  for (const auto& command : std::vector<std::vector<std::string>>{
           {"set", path(), "Preface.ByteOrder=1"}, {"import", document(), "--into", path(), "--in-place"}}) {
    expectRefusal(command, start + "recover '" + real + "': it has 10612 bytes, and had 10608 when its journal was " +
                               "written; to keep it as it is, remove the journal '" + real + ".vantor-journal'");
  }
  writeFile(path(), whole);
  fs::permissions(path(), fs::perms::owner_read);
  expectRefusal({"set", path(), "Preface.ByteOrder=1"}, start + "change '" + real + "': it is read-only");
}

TEST_F(StoppedChangeTest, IsNotUndoneInAnotherFileOfThatNameAndSize) {
  stopAChange();
  const std::string changed = readFile(path());
  const std::string real = fs::canonical(path()).string();
  for (const std::size_t at : {changed.find(std::string("\0X\0Y\0Z", 6)) + 1, std::size_t{40}, changed.size() - 1}) {
    std::string other = changed;
    other[at] ^= 0x20;
    fs::remove(path());
    writeFile(path(), other);
    expectRefusal({"set", path(), "Preface.ByteOrder=1"},
                  "a change that was stopped half-way cannot be undone: cannot recover '" + real +
                      "': it is not the file whose change was stopped, or was changed since; to keep it as it is, " +
                      "remove the journal '" + real + ".vantor-journal'");
  }
}

TEST_F(StoppedChangeTest, IsNotTakenForOneThatHadNotBegunWhereItsJournalIsDamaged) {
  stopAChange();
  writeFile(journal(), readFile(journal()).substr(0, readFile(journal()).size() - 1));
  const std::string real = fs::canonical(path()).string();
  expectRefusal({"set", path(), "Preface.ByteOrder=1"},
                "a change that was stopped half-way cannot be undone: cannot recover '" + real +
                    "': its journal is damaged, and the file may be half changed: it lacks old bytes that are left "
                    "there; if you have a copy from before, use that; to keep it as it is, remove the journal '" +
                    real + ".vantor-journal'");
}

TEST_F(StoppedChangeTest, HadNotBegunWhereItsJournalWasBeingWritten) {
  writeFile(journal() + ".tmp", "vantor-j");
  EXPECT_EQ(run({"export", path()}).exitCode, 0);
  const Result result = run({"set", path(), "Identification.ApplicationName=Ed"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(folder_.files(), ElementsAre("a.mxf"));
}

TEST_F(StoppedChangeTest, IsToldFromOneThatIsUnderWay) {
  change([&] {
    const std::string busy = ": another program is changing the file at the moment; try again later";
    expectRefusal({"recover", path()}, "cannot change '" + fs::canonical(path()).string() +
                                           "': another program is changing it at the moment; try again later");
    expectRefusal({"set", path(), "Preface.ByteOrder=1"}, path() + busy);
    expectRefusal({"export", path()}, path() + busy);
    expectRefusal({"export", sample(kSample), "-o", path()}, path() + busy);
    expectRefusal({"set", sample(kSample), "Preface.ByteOrder=1", "-o", path()},
                  "cannot take '" + path() + "': another program is changing it at the moment; try again later");
  });
  EXPECT_NE(readFile(path()).find(kName), readFile(sample(kSample)).find(kName));
  EXPECT_THAT(folder_.files(), ElementsAre("a.mxf"));
}

TEST_F(StoppedChangeTest, KeepsItsFileFromBeingReplaced) {
  writeEditedDocument();
  stopAChange();
  expectRefusal({"import", document(), "-o", path()}, refusal());
  expectRefusal({"export", sample(kSample), "-o", path()}, refusal());
  expectRefusal({"set", sample(kSample), "Preface.ByteOrder=1", "-o", path()},
                "cannot take '" + path() + "': an earlier change of it was stopped half-way; recover it first");
}

TEST_F(StoppedChangeTest, IsNotLookedForWhereItsJournalWouldHaveTooLongAName) {
  const std::string longName = folder_.path(std::string(250, 'x'));
  fs::rename(path(), longName);
  EXPECT_EQ(run({"export", longName}).exitCode, 0);
  EXPECT_EQ(run({"recover", longName}).exitCode, 0);
  EXPECT_EQ(run({"set", longName, "Preface.ByteOrder=1", "-o", copy()}).exitCode, 0);
}

}  // namespace
}  // namespace Vantor::Tool
