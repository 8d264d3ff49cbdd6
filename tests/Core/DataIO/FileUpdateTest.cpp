#include "Core/DataIO/FileUpdate.h"

#include <gmock/gmock.h>

#include <string>

#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Path.h"
#include "tests/Core/DataIO/FolderTest.h"

namespace Vantor::DataIO::File {
namespace {

namespace fs = std::filesystem;
using Exceptions::IOError;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::ThrowsMessage;

const uint8* bytes(const char* text) { return reinterpret_cast<const uint8*>(text); }

class FileUpdateTest : public FolderTest {};
class NewFileTest : public FolderTest {};

TEST_F(FileUpdateTest, OverwritesBytesAndLeavesTheOthers) {
  create(folder_ / "a", "0123456789");
  FileUpdate file(folder_ / "a");
  EXPECT_EQ(file.size(), 10u);
  file.write(7, bytes("xyz"), 3);
  file.write(0, bytes("ab"), 2);
  EXPECT_EQ(contents(folder_ / "a"), "ab23456xyz");  // with nothing left in a buffer
  file.flush();
}

TEST_F(FileUpdateTest, NeverMakesAFileLonger) {
  create(folder_ / "a", "0123456789");
  FileUpdate file(folder_ / "a");
  EXPECT_THAT([&] { file.write(8, bytes("xyz"), 3); },
              ThrowsMessage<IOError>(AllOf(HasSubstr("at byte offset 8: "), HasSubstr("go past its 10"))));
  EXPECT_THROW(file.write(11, nullptr, 0), IOError);
  EXPECT_THROW(file.write(~uint64{0}, bytes("xyz"), 3), IOError);
  EXPECT_EQ(contents(folder_ / "a"), "0123456789");
}

TEST_F(FileUpdateTest, RefusesWhatIsNoFileThatMayBeWritten) {
  create(folder_ / "a", "text");
  fs::permissions(folder_ / "a", fs::perms::owner_read);
  EXPECT_THAT([&] { FileUpdate file(folder_ / "a"); }, ThrowsMessage<IOError>(HasSubstr("it is read-only")));
  EXPECT_THAT([&] { FileUpdate file(folder_ / "b"); }, ThrowsMessage<IOError>(HasSubstr("No such file")));
  EXPECT_THAT([&] { FileUpdate file(folder_); }, ThrowsMessage<IOError>(HasSubstr("not a regular file")));
  EXPECT_THAT(names(), ElementsAre("a"));
}

TEST_F(FileUpdateTest, IsLockedForOneObjectAtATime) {
  create(folder_ / "a", "text");
  FileUpdate second(folder_ / "a");
  {
    FileUpdate first(folder_ / "a");
    first.lock();
    EXPECT_THAT([&] { second.lock(); }, ThrowsMessage<IOError>(HasSubstr("another program is changing it")));
  }
  EXPECT_NO_THROW(second.lock());
}

#ifndef _WIN32

TEST_F(FileUpdateTest, LocksNoFileThatHasBeenReplacedSinceItWasOpened) {
  create(folder_ / "a", "old");
  create(folder_ / "b", "new");
  FileUpdate file(folder_ / "a");
  fs::rename(folder_ / "b", folder_ / "a");
  EXPECT_THAT([&] { file.lock(); }, ThrowsMessage<IOError>(HasSubstr("another program has replaced it meanwhile")));
  FileUpdate gone(folder_ / "a");
  fs::remove(folder_ / "a");
  EXPECT_THAT([&] { gone.lock(); }, ThrowsMessage<IOError>(HasSubstr("another program has replaced it meanwhile")));
}

#endif

TEST_F(NewFileTest, IsThereAfterTheCommitUnderItsNewName) {
  create(folder_ / "b", "old");
  NewFile file(folder_ / "a");
  file.write(bytes("text"), 4);
  EXPECT_EQ(file.position(), 4u);
  file.commit(folder_ / "b");
  EXPECT_THAT(names(), testing::ElementsAre("b"));
  EXPECT_EQ(contents(folder_ / "b"), "text");
}

TEST_F(NewFileTest, IsRemovedWhenItCannotHaveItsNewName) {
  fs::create_directories(folder_ / "b" / "c");
  {
    NewFile file(folder_ / "a");
    EXPECT_THAT([&] { file.commit(folder_ / "b"); }, ThrowsMessage<IOError>(HasSubstr("cannot create '")));
  }
  EXPECT_THAT(names(), testing::ElementsAre("b"));
}

TEST_F(NewFileTest, CanBeRenamed) {
  create(folder_ / "a", "text");
  create(folder_ / "b", "old");
  EXPECT_EQ(renameOnDisk(folder_ / "a", folder_ / "b"), Durability::kSurvivesPowerFailure);
  EXPECT_THAT(names(), testing::ElementsAre("b"));
  EXPECT_EQ(contents(folder_ / "b"), "text");
  EXPECT_THAT([&] { renameOnDisk(folder_ / "a", folder_ / "b"); },
              ThrowsMessage<IOError>(HasSubstr("cannot rename '")));
}

TEST_F(NewFileTest, IsRemovedWithoutACommit) {
  { NewFile(folder_ / "a").write(bytes("text"), 4); }
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(NewFileTest, LeavesAFileAloneThatExists) {
  create(folder_ / "a", "text");
  EXPECT_THAT([&] { NewFile file(folder_ / "a"); }, ThrowsMessage<IOError>(HasSubstr("File exists")));
  EXPECT_EQ(contents(folder_ / "a"), "text");
}

TEST_F(NewFileTest, CanBeRemoved) {
  create(folder_ / "a", "text");
  EXPECT_EQ(removeFromDisk(folder_ / "a"), Durability::kSurvivesPowerFailure);
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(FileUpdateTest, RefusesFurtherNames) {
  create(folder_ / "a", "old");
  EXPECT_NO_THROW(requireOneName(folder_ / "a"));
  fs::create_hard_link(folder_ / "a", folder_ / "b");
  EXPECT_THAT(
      [&] { requireOneName(folder_ / "b"); },
      ThrowsMessage<IOError>(AllOf(HasSubstr(Platform::pathToUTF8(folder_ / "b")), HasSubstr("it has 2 hard links"))));
  EXPECT_THAT([&] { requireOneName(folder_ / "missing"); }, ThrowsMessage<IOError>(HasSubstr("No such file")));
}

}  // namespace
}  // namespace Vantor::DataIO::File
