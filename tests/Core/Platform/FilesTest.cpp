#include "Core/Platform/Files.h"

#include <gmock/gmock.h>

#ifndef _WIN32
#include <sys/stat.h>
#include <unistd.h>
#endif
#ifdef __linux__
#include <sys/xattr.h>
#endif

#include <string>

#include "Core/DataIO/File.h"
#include "Core/DataIO/FileUpdate.h"
#include "Core/Platform/Path.h"
#include "tests/Core/DataIO/FolderTest.h"

namespace Vantor::DataIO::File {
namespace {

namespace fs = std::filesystem;
using Platform::pathFromWstring;
using Platform::pathToWstring;
using testing::ElementsAre;

void replaceBy(const Path& path, const std::string& text) {
  AtomicFile file(path);
  file.write(reinterpret_cast<const uint8*>(text.data()), text.size());
  file.commit();
}

class FileAttributesTest : public FolderTest {
 protected:
  void SetUp() override {
    FolderTest::SetUp();
    create(folder_ / "a", "old");
  }

  void replace(const Path& path) {
    replaceBy(path, "new");
    EXPECT_EQ(contents(path), "new");
  }
};

#ifndef _WIN32

TEST_F(FileAttributesTest, TellAFileFromAnotherOfItsName) {
  create(folder_ / "b", "old");
  fs::create_symlink("a", folder_ / "link");
  fs::create_hard_link(folder_ / "a", folder_ / "c");
  const FileIdentity identity = identityOf(folder_ / "a");
  EXPECT_EQ(identityOf(folder_ / "link"), identity);
  EXPECT_EQ(identityOf(folder_ / "c"), identity);
  EXPECT_FALSE(identityOf(folder_ / "b") == identity);
  EXPECT_EQ(identityOf(folder_ / "missing"), FileIdentity());
}

TEST_F(FileAttributesTest, StayWithAFileThatIsReplacedByItsOwnersAdministrator) {
  if (::geteuid() != 0) GTEST_SKIP() << "only an administrator gives files away";
  ASSERT_EQ(::chown((folder_ / "a").c_str(), 1234, 2345), 0);
  fs::permissions(folder_ / "a", fs::perms::owner_all | fs::perms::set_gid);
  fs::create_symlink("a", folder_ / "link");
  replace(folder_ / "link");
  struct stat status {};
  ASSERT_EQ(::stat((folder_ / "a").c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, 1234u);
  EXPECT_EQ(status.st_gid, 2345u);
  EXPECT_EQ(fs::status(folder_ / "a").permissions(), fs::perms::owner_all | fs::perms::set_gid);
}

#endif

#ifdef __linux__

TEST_F(FileAttributesTest, OfAnyNameAndLengthStayWithAFileThatIsReplaced) {
  const std::string file = folder_ / "a";
  if (::setxattr(file.c_str(), "user.note", "reel 7", 6, 0) != 0) GTEST_SKIP() << "there are no extended attributes";
  ASSERT_EQ(::setxattr(file.c_str(), "user.empty", "", 0, 0), 0);
  replace(folder_ / "a");
  std::string note(100, 0);
  EXPECT_EQ(::getxattr(file.c_str(), "user.note", note.data(), note.size()), 6);
  EXPECT_EQ(note.substr(0, 6), "reel 7");
  EXPECT_EQ(::getxattr(file.c_str(), "user.empty", nullptr, 0), 0);
}

TEST_F(FileAttributesTest, AreCopiedFromAFileThatIsReadOnly) {
  create(folder_ / "b", "new");
  if (::setxattr((folder_ / "a").c_str(), "user.note", "reel 7", 6, 0) != 0) GTEST_SKIP() << "there are none";
  fs::permissions(folder_ / "a", fs::perms::owner_read);  // which they are to be written before
  copyAttributes(folder_ / "a", folder_ / "b");
  EXPECT_EQ(::getxattr((folder_ / "b").c_str(), "user.note", nullptr, 0), 6);
  EXPECT_EQ(fs::status(folder_ / "b").permissions(), fs::perms::owner_read);
}

#endif

TEST_F(FileAttributesTest, DoNotHinderWhereThereIsNoFile) {
  copyAttributes(folder_ / "missing", folder_ / "a");
  copyAttributes(folder_ / "a", folder_ / "missing");
  EXPECT_THAT(names(), ElementsAre("a"));
}

class FilesTest : public FolderTest {};

TEST_F(FilesTest, BeyondFourGiBAreReadAndChangedAtTheirOffsets) {
  const Path file = folder_ / "large";
  constexpr uint64 kFar = (uint64{5} << 30) + 7;
  create(file, "start");
  {
    // Without blocks on the medium, where the file system can; std::filesystem takes fewer bytes on some systems.
    const Stream stream(openStream(file, "r+b"));
    ASSERT_TRUE(stream && seekStream(stream.get(), kFar + 2));
    if (std::fputc(0, stream.get()) == EOF || std::fflush(stream.get()) != 0)
      GTEST_SKIP() << "no file is that large here";
  }
  FileUpdate update(file);
  EXPECT_EQ(update.size(), kFar + 3);
  const uint8 text[] = {'e', 'n', 'd'};
  update.write(kFar, text, sizeof text);
  update.flush();
  FileDataSource source(file);
  EXPECT_EQ(source.size(), kFar + 3);
  uint8 read[5] = {};
  source.seek(kFar - 2);
  source.read(read, sizeof read);
  EXPECT_THAT(read, ElementsAre(0, 0, 'e', 'n', 'd'));
  source.seek(0);
  source.read(read, sizeof read);
  EXPECT_THAT(read, ElementsAre('s', 't', 'a', 'r', 't'));
}

TEST_F(FilesTest, HaveNamesOfAllCharacters) {
  for (const char* name : {"\u00fcb\u00e9r", "\u5b9f\u9a13", "reel \U0001f39e"}) {
    const Path file = folder_ / Platform::pathFromUTF8(name);
    replaceBy(file, "first");
    replaceBy(file, "second");
    EXPECT_EQ(contents(file), "second");
    EXPECT_EQ(pathFromWstring(pathToWstring(file)), file);
    EXPECT_EQ(Stream(openStream(file, "rb")) != nullptr, true) << name;
  }
  EXPECT_EQ(names().size(), 3u);
}

TEST_F(FilesTest, AreCreatedOnlyWhereThereIsNone) {
  create(folder_ / "a", "old");
  EXPECT_EQ(openStream(folder_ / "a", "wbx"), nullptr);
  EXPECT_EQ(errno, EEXIST);
  EXPECT_EQ(contents(folder_ / "a"), "old");
  EXPECT_TRUE(Stream(openStream(folder_ / "b", "wbx")));
  EXPECT_THAT(names(), testing::UnorderedElementsAre("a", "b"));
}

TEST_F(FilesTest, AreReplacedWhileTheyAreOpenWhereTheSystemDoes) {
  create(folder_ / "a", "old");
  create(folder_ / "b", "new");
  std::error_code error;
  {
    const Stream reader(openStream(folder_ / "a", "rb"));
    ASSERT_TRUE(reader);
    fs::rename(folder_ / "b", folder_ / "a", error);
    EXPECT_EQ(!error, kReplacesOpenFiles) << error.message();
  }
  if (error) fs::rename(folder_ / "b", folder_ / "a");
  EXPECT_EQ(contents(folder_ / "a"), "new");
}

TEST_F(FilesTest, AreLockedUntilTheStreamIsClosedAndStayReadable) {
  create(folder_ / "a", "text");
  {
    const Stream holder(openStream(folder_ / "a", "r+b"));
    EXPECT_FALSE(isLocked(folder_ / "a"));
    ASSERT_TRUE(lockFile(holder.get()));
    EXPECT_TRUE(isLocked(folder_ / "a"));
    const Stream other(openStream(folder_ / "a", "r+b"));
    EXPECT_FALSE(lockFile(other.get()));
    EXPECT_EQ(contents(folder_ / "a"), "text");
  }
  EXPECT_FALSE(isLocked(folder_ / "a"));
  EXPECT_FALSE(isLocked(folder_ / "missing"));
}

TEST_F(FilesTest, HaveOneIdentityUnderAllTheirNames) {
  create(folder_ / "a", "text");
  create(folder_ / "b", "text");
  const Stream stream(openStream(folder_ / "a", "rb"));
  EXPECT_EQ(identityOf(stream.get()), identityOf(folder_ / "a"));
  EXPECT_FALSE(identityOf(folder_ / "a") == identityOf(folder_ / "b"));
  EXPECT_FALSE(identityOf(folder_ / "a") == FileIdentity());
}

TEST_F(FilesTest, OfPrivateFoldersHaveNamesThatBeginAsAsked) {
  Path first = folder_ / "mine-", second = first;
  ASSERT_TRUE(makePrivateFolder(first));
  ASSERT_TRUE(makePrivateFolder(second));
  EXPECT_NE(first, second);
  EXPECT_TRUE(fs::is_directory(first));
  EXPECT_THAT(Platform::pathToUTF8(first.filename()), testing::StartsWith("mine-"));
  Path nowhere = folder_ / "missing" / "mine-";
  EXPECT_FALSE(makePrivateFolder(nowhere));
}

}  // namespace
}  // namespace Vantor::DataIO::File
