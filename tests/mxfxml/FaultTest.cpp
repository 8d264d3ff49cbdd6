#include <gmock/gmock.h>
#include <gtest/gtest.h>

#ifdef __linux__
#include <sys/mount.h>
#include <unistd.h>
#endif

#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <thread>

#include "Core/DataIO/UndoJournal.h"
#include "Program.h"
#include "ScratchFolder.h"
#include "TemporaryFile.h"
#include "tests/Core/DataIO/StoppedProcess.h"
#include "tests/Core/MXF/WholeFile.h"

/// What is left of a file of some MiB when putting edits into it is killed, or meets a full disk or another program.
namespace Vantor::Tool {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::size_t kEssenceSize = std::size_t{3} << 20;
constexpr uint64 kRoom = 4096;
constexpr int kKills = 30;
/// What the writer of the metadata calls itself.
constexpr const char* kName = ">GStreamer Multimedia Framework<";

/// Three partitions; the footer repeats the metadata of the header.
std::string largeFile() {
  MXF::FileLayout layout;
  layout.partitions.resize(3);
  for (auto& partition : layout.partitions) partition.kag = 512;
  layout.partitions[0].kind = KLV::PartitionKind::kHeader;
  layout.partitions[1].essence = MXF::klv(MXF::kPictureElement, Bytes(kEssenceSize, 0x55));
  layout.partitions[1].bodySID = 1;
  layout.partitions[2].kind = KLV::PartitionKind::kFooter;
  for (const std::size_t i : {0, 2}) {
    layout.partitions[i].metadata = MXF::metadataIn(sample("gst-audio-ac3.mxf"), 0);
    layout.partitions[i].spare = kRoom;
  }
  const Bytes bytes = MXF::fileOf(layout);
  return {bytes.begin(), bytes.end()};
}

/// Moments within a time and a little later, the same in every run.
class Moments {
 public:
  explicit Moments(std::chrono::microseconds end) : end_(end.count() * 11 / 10) {}
  std::chrono::microseconds next() {
    return std::chrono::microseconds(std::uniform_int_distribution<std::chrono::microseconds::rep>(0, end_)(random_));
  }

 private:
  std::mt19937 random_{1};
  std::chrono::microseconds::rep end_;
};

class FaultTest : public testing::Test {
 protected:
  FaultTest() : old_(largeFile()), document_(readDocument()) { writeFile(original(), old_); }

  std::string original() const { return folder_.path("original.mxf"); }
  std::string copy() const { return folder_.path("copy.mxf"); }
  std::string edited() const { return folder_.path("edited.xml"); }

  /// Writes a document in which the name has become another.
  void edit(const std::string& name) {
    std::string xml = document_;
    const auto at = xml.find(kName);
    ASSERT_NE(at, std::string::npos);
    writeFile(edited(), xml.replace(at, std::string(kName).size(), ">" + name + "<"));
  }
  void editWithinRoom() { edit("Ed"); }
  void editBeyondRoom() { edit(std::string(3 * kRoom, 'x')); }

  std::vector<std::string> intoCopy() const { return {"import", edited(), "--into", original(), "-o", copy()}; }
  std::vector<std::string> inPlace() const { return {"import", edited(), "--into", original(), "--in-place"}; }

  /// What the file is with the edit.
  std::string expected() {
    const ScratchFolder elsewhere;
    const std::string path = elsewhere.path("expected.mxf");
    EXPECT_EQ(run({"import", edited(), "--into", original(), "-o", path}).exitCode, 0);
    return readFile(path);
  }

  /// Removes what a killed writer could not: its new file that was not whole.
  bool removeTemporary() const {
    for (const auto& name : folder_.files()) {
      if (name.rfind(".vantor-", 0) == 0) return fs::remove(folder_.path() / name);
    }
    return false;
  }

  void waitForMoment(int kill, Moments& moments, const StartedProgram& program) const;

  /// How long the run takes that is to be killed.
  static std::chrono::microseconds timeOf(const std::vector<std::string>& arguments) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(run(arguments).exitCode, 0);
    return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
  }

  const ScratchFolder folder_;
  const std::string old_;

 private:
  std::string readDocument() const {
    const ScratchFolder elsewhere;
    writeFile(elsewhere.path("a.mxf"), old_);
    return run({"export", elsewhere.path("a.mxf")}).out;
  }
  const std::string document_;
};

/// Some of the kills are to meet the writing of the new file, however fast the machine is.
void FaultTest::waitForMoment(int kill, Moments& moments, const StartedProgram& program) const {
  if (kill % 3 != 0) return std::this_thread::sleep_for(moments.next());
  program.waitUntil([&] { return temporarySize(folder_.path()) > 0; });
}

TEST_F(FaultTest, LeavesTheOriginalAndAWholeCopyOrNoneWhenItIsKilled) {
  editBeyondRoom();
  const std::string expected = this->expected();
  Moments moments(timeOf(intoCopy()));
  int unfinished = 0;
  for (int i = 0; i < kKills; ++i) {
    fs::remove(copy());
    StartedProgram program(intoCopy());
    waitForMoment(i, moments, program);
    program.kill();
    unfinished += removeTemporary() ? 1 : 0;
    ASSERT_TRUE(readFile(original()) == old_);
    ASSERT_TRUE(!fs::exists(copy()) || readFile(copy()) == expected);
  }
  EXPECT_GT(unfinished, 0);
  RecordProperty("unfinished", unfinished);
}

TEST_F(FaultTest, LeavesTheOldFileOrTheNewOneWhenItIsKilledWritingAnew) {
  editBeyondRoom();
  const std::string expected = this->expected();
  Moments moments(timeOf(inPlace()));
  int unfinished = 0;
  for (int i = 0; i < kKills; ++i) {
    writeFile(original(), old_);
    StartedProgram program(inPlace());
    waitForMoment(i, moments, program);
    program.kill();
    unfinished += removeTemporary() ? 1 : 0;
    const std::string bytes = readFile(original());
    ASSERT_TRUE(bytes == old_ || bytes == expected);
    EXPECT_THAT(folder_.files(), ElementsAre("edited.xml", "original.mxf"));
  }
  EXPECT_GT(unfinished, 0);
  RecordProperty("unfinished", unfinished);
}

TEST_F(FaultTest, PutsBackAFileWhoseChangeWasKilledBeforeItIsChangedAgain) {
  editWithinRoom();
  const std::string expected = this->expected();
  const fs::path journal = DataIO::File::journalPath(original());
  bool wasStopped = false;
  for (int attempt = 0; attempt < kKills && !wasStopped; ++attempt) {
    writeFile(original(), old_);
    StartedProgram program(inPlace());
    program.waitUntil([&] { return fs::exists(journal); });
    program.kill();
    wasStopped = fs::exists(journal);
  }
  ASSERT_TRUE(wasStopped);
  const Result result = run(inPlace());
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.err, HasSubstr(": a change that was stopped half-way is undone\n"));
  EXPECT_TRUE(readFile(original()) == expected);
  EXPECT_THAT(folder_.files(), ElementsAre("edited.xml", "original.mxf"));
}

TEST_F(FaultTest, TellsWhenAnotherProgramChangesTheOriginalMeanwhile) {
  editBeyondRoom();
  for (const auto& arguments : {intoCopy(), inPlace()}) {
    Result result{0, "", ""};
    for (int attempt = 0; attempt < kKills && result.exitCode == 0; ++attempt) {
      fs::remove(copy());
      writeFile(original(), old_);
      StartedProgram program(arguments);
      program.waitUntil([&] { return temporarySize(folder_.path()) > kEssenceSize / 3; });
      program.stop();
      std::ofstream(original(), std::ios::binary | std::ios::app) << "more";
      result = program.resume();
    }
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("cannot copy '" + original() + "': another program has changed it meanwhile"));
    EXPECT_TRUE(readFile(original()) == old_ + "more");
    EXPECT_THAT(folder_.files(), ElementsAre("edited.xml", "original.mxf"));
  }
}

TEST_F(FaultTest, LeavesNothingWhereTheCopyGrowsTooLarge) {
  editBeyondRoom();
  for (const auto& arguments : {intoCopy(), inPlace()}) {
    const Result result = runLimited("ulimit -f 4096", arguments);  // blocks of 512 bytes
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("File too large\n"));
    EXPECT_TRUE(readFile(original()) == old_);
    EXPECT_THAT(folder_.files(), ElementsAre("edited.xml", "original.mxf"));
  }
}

TEST_F(FaultTest, GoesBackWhereTheFooterCannotBeWritten) {
  editWithinRoom();
  const Result result = runLimited("ulimit -f 4096", inPlace());
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("File too large; the file is as it was\n"));
  EXPECT_TRUE(readFile(original()) == old_);
  EXPECT_THAT(folder_.files(), ElementsAre("edited.xml", "original.mxf"));
}

TEST_F(FaultTest, ChangesNothingWhereTheJournalCannotBeWritten) {
  editWithinRoom();
  const Result result = runLimited("ulimit -f 4", inPlace());
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("original.mxf.vantor-journal.tmp': File too large\n"));
  EXPECT_TRUE(readFile(original()) == old_);
  EXPECT_THAT(folder_.files(), ElementsAre("edited.xml", "original.mxf"));
}

TEST_F(FaultTest, ChangesNoFileThatIsMarkedAsReadOnly) {
  fs::permissions(original(), fs::perms::owner_read);
  for (const std::size_t size : {2, 12000}) {  // within the room and beyond
    edit(std::string(size, 'x'));
    const Result result = run(inPlace());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("cannot change '" + original() + "': it is read-only"));
    EXPECT_TRUE(readFile(original()) == old_);
    EXPECT_EQ(run(intoCopy()).exitCode, 0);
    fs::remove(copy());
  }
}

TEST_F(FaultTest, ChangesNoFileWithFurtherNames) {
  const std::string other = folder_.path("other.mxf");
  fs::create_hard_link(original(), other);
  for (const std::size_t size : {2, 12000}) {  // within the room and beyond
    edit(std::string(size, 'x'));
    const Result result = run(inPlace());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("cannot change '" + original() + "': it has 2 hard links, and its other names"));
    EXPECT_TRUE(readFile(original()) == old_);
    EXPECT_TRUE(fs::equivalent(original(), other));
    EXPECT_EQ(run(intoCopy()).exitCode, 0);
    fs::remove(copy());
  }
}

TEST_F(FaultTest, MayHaveTheOriginalAsItsOutput) {
  editBeyondRoom();
  const std::string expected = this->expected();
  EXPECT_EQ(run({"import", edited(), "--into", original(), "-o", original()}).exitCode, 0);
  EXPECT_TRUE(readFile(original()) == expected);
  EXPECT_THAT(folder_.files(), ElementsAre("edited.xml", "original.mxf"));
}

TEST_F(FaultTest, KeepsTheDocumentWhenThatIsNamedAsTheFile) {
  editWithinRoom();
  const std::string document = readFile(edited());
  const std::string noMXF = edited() + ": this is no MXF file: no partition pack among its first 65,536 bytes";
  for (const auto& [arguments, message] : std::vector<std::pair<std::vector<std::string>, std::string>>{
           {{"--into", original(), "-o", edited()}, "the output '" + edited() + "' is the input itself"},
           {{"--into", edited(), "--in-place"}, noMXF},
           {{"--into", edited(), "-o", copy()}, noMXF}}) {
    std::vector<std::string> all = {"import", edited()};
    all.insert(all.end(), arguments.begin(), arguments.end());
    const Result result = run(all);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "mxfxml: " + message + "\n");
    EXPECT_EQ(readFile(edited()), document);
    EXPECT_THAT(folder_.files(), ElementsAre("edited.xml", "original.mxf"));
  }
}

#ifdef __linux__

/// Becomes the program, without its messages.
void execute(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), programPath());
  std::vector<char*> pointers;
  for (auto& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  if (std::freopen("/dev/null", "w", stdout) == nullptr) ::_exit(1);
  ::execv(pointers[0], pointers.data());
  ::_exit(1);
}

TEST_F(FaultTest, LeavesWhatCanBeRecoveredWhenItIsKilledInPlaceAtManySystemCalls) {
  editWithinRoom();
  const std::string expected = this->expected();
  const fs::path journal = DataIO::File::journalPath(original());
  const fs::path unfinished = journal.string() + ".tmp";
  using DataIO::File::Recovery;
  std::map<Recovery, int> recoveries;
  int done = 0;
  auto ending = Ending::kKilled;
  for (int calls = 0; ending == Ending::kKilled; calls += 3) {
    writeFile(original(), old_);
    bool hasBegun = false;
    int left = calls;  // system calls with the journal, and afterwards
    const auto isDue = [&] {
      return (hasBegun = hasBegun || fs::exists(journal) || fs::exists(unfinished)) && left-- == 0;
    };
    ending = runUntilSystemCall(isDue, [&] { execute(inPlace()); });
    if (ending == Ending::kNotTraceable) GTEST_SKIP() << "this system does not let a process trace its child";
    ASSERT_NE(ending, Ending::kFailed);
    ASSERT_TRUE(hasBegun);
    const auto recovery = DataIO::File::recover(original());
    const std::string bytes = readFile(original());
    ASSERT_TRUE(bytes == (recovery == Recovery::kNoJournal ? expected : old_)) << calls;
    EXPECT_THAT(folder_.files(), ElementsAre("edited.xml", "original.mxf"));
    ++recoveries[recovery];
    done += recovery == Recovery::kNoJournal && ending == Ending::kKilled ? 1 : 0;
  }
  RecordProperty("neverBegun", recoveries[Recovery::kNeverBegun]);
  RecordProperty("restored", recoveries[Recovery::kRestored]);
  RecordProperty("done", done);
  EXPECT_GT(recoveries[Recovery::kNeverBegun], 5);
  EXPECT_GT(recoveries[Recovery::kRestored], 5);
  EXPECT_GT(done, 5);
}

/// A file system of its own with little room.
class SmallDisk {
 public:
  SmallDisk(std::string folder, const std::string& size) : folder_(std::move(folder)) {
    fs::create_directory(folder_);
    isMounted_ = ::mount("none", folder_.c_str(), "tmpfs", 0, ("size=" + size).c_str()) == 0;
  }
  ~SmallDisk() {
    if (isMounted_) ::umount2(folder_.c_str(), MNT_DETACH);
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  bool isMounted() const { return isMounted_; }
  std::string path(const std::string& name) const { return folder_ + "/" + name; }

 private:
  std::string folder_;
  bool isMounted_ = false;
};

TEST_F(FaultTest, LeavesNothingOnAFullDisk) {
  const SmallDisk disk(folder_.path("disk"), "5m");
  if (!disk.isMounted()) GTEST_SKIP() << "only an administrator may mount a small disk";
  fs::copy_file(original(), disk.path("a.mxf"));
  editBeyondRoom();
  for (const auto& target : {std::vector<std::string>{"--in-place"}, {"-o", disk.path("b.mxf")}}) {
    std::vector<std::string> arguments = {"import", edited(), "--into", disk.path("a.mxf")};
    arguments.insert(arguments.end(), target.begin(), target.end());
    const Result result = run(arguments);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("No space left on device\n"));
    EXPECT_TRUE(readFile(disk.path("a.mxf")) == old_);
    EXPECT_EQ(std::distance(fs::directory_iterator(disk.path("")), {}), 1);
  }
  editWithinRoom();
  EXPECT_EQ(run({"import", edited(), "--into", disk.path("a.mxf"), "--in-place"}).exitCode, 0);
}

TEST_F(FaultTest, ChangesNothingOnADiskWithoutRoomForTheJournal) {
  const SmallDisk disk(folder_.path("disk"), "5m");
  if (!disk.isMounted()) GTEST_SKIP() << "only an administrator may mount a small disk";
  fs::copy_file(original(), disk.path("a.mxf"));
  std::ofstream(disk.path("rest"), std::ios::binary) << std::string(std::size_t{2} << 20, '.') << std::flush;
  editWithinRoom();
  const Result result = run({"import", edited(), "--into", disk.path("a.mxf"), "--in-place"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("a.mxf.vantor-journal.tmp': No space left on device\n"));
  EXPECT_TRUE(readFile(disk.path("a.mxf")) == old_);
  EXPECT_EQ(std::distance(fs::directory_iterator(disk.path("")), {}), 2);
}

#endif

}  // namespace
}  // namespace Vantor::Tool
