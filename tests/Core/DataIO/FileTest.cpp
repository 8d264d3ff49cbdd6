#include "Core/DataIO/File.h"

#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>

#include "Core/Platform/Containers.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Path.h"
#include "tests/Core/DataIO/FolderTest.h"
#include "tests/Core/DataIO/StoppedProcess.h"
#include "tests/Core/Platform/ThisSystem.h"

namespace Vantor::DataIO::File {
namespace {

namespace fs = std::filesystem;
using Exceptions::IOError;
using Exceptions::ParseError;
using testing::AllOf;
using testing::HasSubstr;
using testing::StrEq;
using testing::ThrowsMessage;

void write(AtomicFile& file, const std::string& text) {
  file.write(reinterpret_cast<const uint8*>(text.data()), text.size());
}

class FileDataSourceTest : public FolderTest {};
class AtomicFileTest : public FolderTest {};
class FileStateTest : public FolderTest {};

TEST_F(FileDataSourceTest, ReadsFromFrontToBackAndFromAnyOffset) {
  create(folder_ / "a", "0123456789");
  FileDataSource source(folder_ / "a");
  uint8 read[4] = {};
  source.read(read, 2);
  source.skip(3);
  source.read(read + 2, 1);
  source.seek(1);
  source.read(read + 3, 1);
  EXPECT_THAT(read, testing::ElementsAre('0', '1', '5', '1'));
  EXPECT_EQ(source.size(), 10u);
  EXPECT_EQ(source.position(), 2u);
  EXPECT_EQ(source.remaining(), 8u);
}

TEST_F(FileDataSourceTest, NamesTheOffsetWhenReadOrSkippedPastTheEnd) {
  create(folder_ / "a", "0123");
  FileDataSource source(folder_ / "a");
  source.seek(2);
  uint8 read[3];
  const auto message = StrEq("at byte offset 2: expected 3 more bytes, found 2");
  EXPECT_THAT([&] { source.read(read, 3); }, ThrowsMessage<ParseError>(message));
  EXPECT_THAT([&] { source.skip(3); }, ThrowsMessage<ParseError>(message));
  EXPECT_THROW(source.skip(~uint64{0}), ParseError);
  EXPECT_EQ(source.position(), 2u);
}

TEST_F(FileDataSourceTest, SeeksToTheEndButNotBehindIt) {
  create(folder_ / "a", "0123");
  FileDataSource source(folder_ / "a");
  source.seek(4);
  EXPECT_EQ(source.remaining(), 0u);
  EXPECT_THAT([&] { source.seek(5); },
              ThrowsMessage<ParseError>(AllOf(HasSubstr("at byte offset 5: "), HasSubstr("which has 4 bytes"))));
  EXPECT_EQ(source.position(), 4u);
}

TEST_F(FileDataSourceTest, ReadsNothingFromAnEmptyFile) {
  create(folder_ / "a", "");
  FileDataSource source(folder_ / "a");
  EXPECT_EQ(source.size(), 0u);
  EXPECT_NO_THROW(source.read(nullptr, 0));
  EXPECT_THROW(readBigEndian<uint8>(source), ParseError);
}

TEST_F(FileDataSourceTest, ReadsBeyondFourGibibytes) {
  const uint64 offset = (uint64{1} << 32) + 7;
  create(folder_ / "sparse", "");
  ASSERT_TRUE(ThisSystem::growTo(folder_ / "sparse", offset));
  std::ofstream(folder_ / "sparse", std::ios::binary | std::ios::app) << "MXF";
  FileDataSource source(folder_ / "sparse");
  ASSERT_EQ(source.size(), offset + 3);
  source.skip(offset);
  EXPECT_EQ(readBigEndian<uint16>(source), 0x4D58);
  EXPECT_EQ(source.position(), offset + 2);
  source.seek(offset - 1);
  EXPECT_EQ(readBigEndian<uint16>(source), 0x004D);
}

TEST_F(FileDataSourceTest, NamesPathAndReasonOfAMissingFile) {
  const Path missing = folder_ / "mi\u00DFing";
  EXPECT_THAT(
      [&] { FileDataSource source(missing); },
      ThrowsMessage<IOError>(StrEq("cannot open '" + Platform::pathToUTF8(missing) + "': No such file or directory")));
}

TEST_F(FileDataSourceTest, RefusesADirectory) {
  EXPECT_THAT([&] { FileDataSource source(folder_); },
              ThrowsMessage<IOError>(AllOf(HasSubstr(Platform::pathToUTF8(folder_)), HasSubstr("Is a directory"))));
}

TEST_F(FileDataSourceTest, RefusesADeviceInsteadOfWaitingForIt) {
  EXPECT_THAT(
      [] { FileDataSource source(ThisSystem::kNullDevice); },
      ThrowsMessage<IOError>(StrEq("cannot read '" + std::string(ThisSystem::kNullDevice) + "': not a regular file")));
}

TEST_F(FileDataSourceTest, TellsThatTheFileBecameShorterWhileItWasRead) {
  create(folder_ / "a", std::string(100000, 'x'));
  FileDataSource source(folder_ / "a");
  fs::resize_file(folder_ / "a", 90000);
  source.seek(89999);
  uint8 read[2];
  EXPECT_THAT([&] { source.read(read, 2); },
              ThrowsMessage<IOError>(AllOf(HasSubstr("at byte offset 89999: "), HasSubstr("become shorter"))));
  EXPECT_EQ(source.position(), 89999u);
  source.read(read, 1);
  EXPECT_EQ(read[0], 'x');
}

TEST_F(AtomicFileTest, AppearsWithAllItsBytesOnCommit) {
  AtomicFile file(folder_ / "a");
  write(file, "head");
  write(file, std::string(100000, 'x'));
  file.write(nullptr, 0);
  EXPECT_EQ(file.position(), 100004u);
  EXPECT_FALSE(fs::exists(folder_ / "a"));
  file.commit();
  EXPECT_EQ(contents(folder_ / "a"), "head" + std::string(100000, 'x'));
  EXPECT_THAT(names(), testing::ElementsAre("a"));
}

TEST_F(AtomicFileTest, LeavesNothingWhenItIsNotCommitted) {
  {
    AtomicFile file(folder_ / "a");
    write(file, "half");
    EXPECT_EQ(names().size(), 1u);
  }
  EXPECT_THAT(names(), testing::IsEmpty());
}

TEST_F(AtomicFileTest, KeepsTheOldFileUntilTheCommitAndThenReplacesItWhole) {
  create(folder_ / "a", "the old text, longer than the new one");
  AtomicFile file(folder_ / "a");
  write(file, "new");
  EXPECT_EQ(contents(folder_ / "a"), "the old text, longer than the new one");
  file.commit();
  EXPECT_EQ(contents(folder_ / "a"), "new");
  EXPECT_THAT(names(), testing::ElementsAre("a"));
}

TEST_F(AtomicFileTest, LeavesTheOldBytesToAReaderWhoOpenedTheOldFile) {
  create(folder_ / "a", "the old text, longer than the new one");
  FileDataSource reader(folder_ / "a");
  {
    AtomicFile file(folder_ / "a");
    write(file, "new");
    if (kReplacesOpenFiles) {
      file.commit();
    } else {
      EXPECT_THAT([&] { file.commit(); }, ThrowsMessage<IOError>(HasSubstr("cannot replace '")));
    }
  }
  EXPECT_EQ(contents(folder_ / "a"), kReplacesOpenFiles ? "new" : "the old text, longer than the new one");
  EXPECT_THAT(names(), testing::ElementsAre("a"));
  reader.seek(4);
  EXPECT_EQ(readBigEndian<uint8>(reader), 'o');
}

TEST_F(AtomicFileTest, PutsAFileInPlaceThatIsOnTheMedium) {
  create(folder_ / "a", "old");
  AtomicFile file(folder_ / "a");
  write(file, "new");
  EXPECT_EQ(file.commit(Durability::kSurvivesPowerFailure), Durability::kSurvivesPowerFailure);
  EXPECT_EQ(contents(folder_ / "a"), "new");
  EXPECT_THAT(names(), testing::ElementsAre("a"));
}

TEST_F(AtomicFileTest, IsWholeButNotInPlaceAtTheLastCheck) {
  create(folder_ / "a", "old");
  for (const auto durability : {Durability::kAtomic, Durability::kSurvivesPowerFailure}) {
    AtomicFile file(folder_ / "a");
    write(file, "new");
    const auto refuse = [&] {
      EXPECT_EQ(contents(folder_ / "a"), "old");
      for (const auto& name : names()) EXPECT_EQ(contents(folder_ / name), name == "a" ? "old" : "new");
      throw std::runtime_error("refused");
    };
    EXPECT_THROW(file.commit(durability, refuse), std::runtime_error);
    EXPECT_EQ(contents(folder_ / "a"), "old");
  }
  EXPECT_THAT(names(), testing::ElementsAre("a"));
}

TEST_F(AtomicFileTest, KeepsTheOldFileWhenItIsNotCommitted) {
  create(folder_ / "a", "old");
  { write(*std::make_unique<AtomicFile>(folder_ / "a"), "new"); }
  EXPECT_EQ(contents(folder_ / "a"), "old");
  EXPECT_THAT(names(), testing::ElementsAre("a"));
}

TEST_F(AtomicFileTest, WritesAnEmptyFile) {
  AtomicFile file(folder_ / "a");
  file.commit();
  EXPECT_EQ(fs::file_size(folder_ / "a"), 0u);
}

TEST_F(AtomicFileTest, TakesOverThePermissionsOfTheFileItReplaces) {
  if (!ThisSystem::hasPermissions(folder_)) GTEST_SKIP() << ThisSystem::kNoPermissions;
  create(folder_ / "a", "old");
  const auto permissions = fs::perms::owner_read | fs::perms::owner_write;
  fs::permissions(folder_ / "a", permissions);
  AtomicFile file(folder_ / "a");
  file.commit();
  EXPECT_EQ(fs::status(folder_ / "a").permissions(), permissions);
}

TEST_F(AtomicFileTest, ReplacesTheFileBehindASymbolicLink) {
  if (!ThisSystem::hasSymbolicLinks(folder_)) GTEST_SKIP() << ThisSystem::kNoSymbolicLinks;
  fs::create_directory(folder_ / "sub");
  create(folder_ / "sub" / "real", "old");
  fs::create_symlink(Path("sub") / "real", folder_ / "link");
  AtomicFile file(folder_ / "link");
  write(file, "new");
  file.commit();
  EXPECT_TRUE(fs::is_symlink(folder_ / "link"));
  EXPECT_EQ(contents(folder_ / "sub" / "real"), "new");
}

TEST_F(AtomicFileTest, CreatesTheFileBehindSymbolicLinksThatLeadToNothingYet) {
  if (!ThisSystem::hasSymbolicLinks(folder_)) GTEST_SKIP() << ThisSystem::kNoSymbolicLinks;
  fs::create_directory(folder_ / "sub");
  fs::create_symlink(Path("sub") / "second", folder_ / "first");
  fs::create_symlink("real", folder_ / "sub" / "second");
  AtomicFile file(folder_ / "first");
  write(file, "new");
  file.commit();
  EXPECT_TRUE(fs::is_symlink(folder_ / "first"));
  EXPECT_TRUE(fs::is_symlink(folder_ / "sub" / "second"));
  EXPECT_EQ(contents(folder_ / "sub" / "real"), "new");
}

TEST_F(AtomicFileTest, RefusesSymbolicLinksThatLeadNowhere) {
  if (!ThisSystem::hasSymbolicLinks(folder_)) GTEST_SKIP() << ThisSystem::kNoSymbolicLinks;
  fs::create_symlink(Path("missing") / "real", folder_ / "link");
  fs::create_symlink("loop", folder_ / "loop");
  EXPECT_THAT(
      [&] { AtomicFile file(folder_ / "link"); },
      ThrowsMessage<IOError>(AllOf(HasSubstr(Platform::pathToUTF8(folder_ / "link")), HasSubstr("No such file"))));
  EXPECT_THAT(
      [&] { AtomicFile file(folder_ / "loop"); },
      ThrowsMessage<IOError>(AllOf(HasSubstr(Platform::pathToUTF8(folder_ / "loop")), HasSubstr("symbolic links"))));
  EXPECT_TRUE(fs::is_symlink(folder_ / "link"));
  EXPECT_TRUE(fs::is_symlink(folder_ / "loop"));
}

TEST_F(AtomicFileTest, RefusesAnExistingFileThatIsReadOnly) {
  create(folder_ / "a", "precious");
  fs::permissions(folder_ / "a", fs::perms::owner_read);
  const Path target = folder_ / "a";
  EXPECT_THAT([&] { AtomicFile file(target); },
              ThrowsMessage<IOError>(StrEq("cannot change '" + Platform::pathToUTF8(target) + "': it is read-only")));
  EXPECT_EQ(contents(folder_ / "a"), "precious");
  EXPECT_THAT(names(), testing::ElementsAre("a"));
}

TEST_F(AtomicFileTest, RefusesAReadOnlyFileBehindASymbolicLink) {
  if (!ThisSystem::hasSymbolicLinks(folder_)) GTEST_SKIP() << ThisSystem::kNoSymbolicLinks;
  create(folder_ / "a", "precious");
  fs::create_symlink("a", folder_ / "link");
  fs::permissions(folder_ / "a", fs::perms::owner_read);
  const Path target = folder_ / "link";
  EXPECT_THAT([&] { AtomicFile file(target); },
              ThrowsMessage<IOError>(StrEq("cannot change '" + Platform::pathToUTF8(target) + "': it is read-only")));
  EXPECT_EQ(contents(folder_ / "a"), "precious");
  EXPECT_THAT(names(), testing::UnorderedElementsAre("a", "link"));
}

TEST_F(AtomicFileTest, NamesTheTargetWhoseFolderDoesNotExist) {
  const Path target = folder_ / "missing" / "a";
  EXPECT_THAT([&] { AtomicFile file(target); }, ThrowsMessage<IOError>(AllOf(HasSubstr(Platform::pathToUTF8(target)),
                                                                             HasSubstr("No such file or directory"))));
  EXPECT_THAT(names(), testing::IsEmpty());
}

TEST_F(AtomicFileTest, RefusesADirectoryAsTarget) {
  EXPECT_THAT([&] { AtomicFile file(folder_); }, ThrowsMessage<IOError>(HasSubstr("Is a directory")));
  EXPECT_THAT(names(), testing::IsEmpty());
}

TEST_F(AtomicFileTest, LeavesNothingWhenTheFolderDisappearsBeforeTheCommit) {
  fs::create_directory(folder_ / "sub");
  AtomicFile file(folder_ / "sub" / "a");
  write(file, "text");
  std::error_code error;
  fs::remove_all(folder_ / "sub", error);
  if (error) GTEST_SKIP() << "this system keeps a folder with an open file";
  EXPECT_THAT([&] { file.commit(); },
              ThrowsMessage<IOError>(AllOf(HasSubstr("cannot replace"), HasSubstr("No such file or directory"))));
  EXPECT_THAT(names(), testing::IsEmpty());
}

TEST_F(AtomicFileTest, LeavesOnlyTheObstacleWhenTheTargetTurnsIntoAFolder) {
  {
    AtomicFile file(folder_ / "a");
    write(file, "text");
    fs::create_directory(folder_ / "a");
    EXPECT_THROW(file.commit(), IOError);
  }
  EXPECT_THAT(names(), testing::ElementsAre("a"));
  EXPECT_TRUE(fs::is_directory(folder_ / "a"));
}

TEST_F(AtomicFileTest, CannotBeWrittenOrCommittedTwice) {
  AtomicFile file(folder_ / "a");
  write(file, "text");
  file.commit();
  EXPECT_THROW(write(file, "more"), IOError);
  EXPECT_THROW(file.commit(), IOError);
  EXPECT_EQ(contents(folder_ / "a"), "text");
}

TEST_F(AtomicFileTest, WritesDirectlyToADevice) {
  AtomicFile file(ThisSystem::kNullDevice);
  write(file, "text");
  file.commit();
  EXPECT_TRUE(fs::is_character_file(statusOf(ThisSystem::kNullDevice)));
}

TEST_F(FileStateTest, TellsOtherSizesAndTimesApart) {
  create(folder_ / "a", "text");
  const FileState state = stateOf(folder_ / "a");
  EXPECT_EQ(state.size, 4u);
  EXPECT_EQ(stateOf(folder_ / "a"), state);
  fs::last_write_time(folder_ / "a", state.modified + std::chrono::milliseconds(10));
  EXPECT_NE(stateOf(folder_ / "a"), state);
  fs::resize_file(folder_ / "a", 3);
  fs::last_write_time(folder_ / "a", state.modified);
  EXPECT_NE(stateOf(folder_ / "a"), state);
}

TEST_F(FileStateTest, TellsAnotherFileOfTheSameSizeAndTime) {
  if (!ThisSystem::hasSymbolicLinks(folder_)) GTEST_SKIP() << ThisSystem::kNoSymbolicLinks;
  create(folder_ / "a", "text");
  create(folder_ / "b", "TEXT");
  fs::create_symlink("a", folder_ / "link");
  const FileState state = stateOf(folder_ / "link");
  EXPECT_EQ(stateOf(folder_ / "a"), state);
  EXPECT_NO_THROW(requireState(folder_ / "link", state, "cannot change"));
  fs::last_write_time(folder_ / "b", state.modified);
  fs::rename(folder_ / "b", folder_ / "a");
  EXPECT_NE(stateOf(folder_ / "link"), state);
  EXPECT_THAT([&] { requireState(folder_ / "link", state, "cannot change"); },
              ThrowsMessage<IOError>(StrEq("cannot change '" + Platform::pathToUTF8(folder_ / "link") +
                                           "': another program has changed it meanwhile; begin anew")));
}

TEST_F(FileStateTest, TellsAReplacementAndAFurtherNameApart) {
  create(folder_ / "a", "text");
  create(folder_ / "b", "TEXT");
  const FileState state = stateOf(folder_ / "a");
  fs::create_hard_link(folder_ / "a", folder_ / "c");
  EXPECT_EQ(stateOf(folder_ / "c"), state);
  fs::last_write_time(folder_ / "b", state.modified);
  fs::rename(folder_ / "b", folder_ / "a");
  EXPECT_FALSE(stateOf(folder_ / "a").identity == state.identity);
  EXPECT_THAT([&] { requireState(folder_ / "a", state, "cannot change"); },
              ThrowsMessage<IOError>(HasSubstr("another program has changed it meanwhile")));
  EXPECT_EQ(stateOf(folder_ / "c"), state);
}

TEST_F(FileStateTest, NamesTheFileThatIsMissing) {
  EXPECT_THAT([&] { stateOf(folder_ / "a"); },
              ThrowsMessage<IOError>(AllOf(HasSubstr(Platform::pathToUTF8(folder_ / "a")), HasSubstr("No such file"))));
}

#ifdef __linux__

TEST_F(AtomicFileTest, WritesToAPipeThatIsKnownByItsDescriptorOnly) {
  int ends[2] = {};
  ASSERT_EQ(::pipe(ends), 0);
  AtomicFile file("/proc/self/fd/" + std::to_string(ends[1]));
  write(file, "text");
  file.commit();
  char bytes[8] = {};
  EXPECT_EQ(::read(ends[0], bytes, sizeof bytes), 4);
  EXPECT_STREQ(bytes, "text");
  ::close(ends[0]);
  ::close(ends[1]);
}

TEST_F(AtomicFileTest, TellsWhereTheNameOfTheNewFileMayNotLast) {
  constexpr uid_t kNobody = 65534;
  const Path folder = folder_ / "sub";
  fs::create_directory(folder);
  fs::permissions(folder, fs::perms::owner_write | fs::perms::owner_exec);
  ASSERT_TRUE(::geteuid() != 0 || ::chown(folder.c_str(), kNobody, kNobody) == 0);
  const auto writeFile = [&] {
    if (::geteuid() == 0 && ::setuid(kNobody) != 0) ::_exit(1);
    AtomicFile file(folder / "a");
    write(file, "new");
    if (file.commit(Durability::kSurvivesPowerFailure) != Durability::kAtomic) ::_exit(1);
  };
  EXPECT_EQ(runWithFileSizeLimit(4096, writeFile), Ending::kFinished);
  fs::permissions(folder, fs::perms::owner_all);
  EXPECT_EQ(contents(folder / "a"), "new");
}

#endif

class FullDeviceTest : public FolderTest {
 protected:
  void SetUp() override {
    FolderTest::SetUp();
    if (!fs::is_character_file("/dev/full")) GTEST_SKIP() << "this system has no device that is always full";
  }
};

TEST_F(FullDeviceTest, ThrowsAtTheWriteThatTheDiskDoesNotTake) {
  AtomicFile file("/dev/full");
  EXPECT_THAT([&] { write(file, std::string(1 << 20, 'x')); },
              ThrowsMessage<IOError>(StrEq("at byte offset 0: cannot write '/dev/full': No space left on device")));
  EXPECT_THROW(file.commit(), IOError);
}

TEST_F(FullDeviceTest, ThrowsAtTheCommitWhenTheLastBytesWereStillBuffered) {
  AtomicFile file("/dev/full");
  write(file, "few");
  EXPECT_THAT([&] { file.commit(); },
              ThrowsMessage<IOError>(StrEq("cannot finish '/dev/full': No space left on device")));
}

}  // namespace
}  // namespace Vantor::DataIO::File
