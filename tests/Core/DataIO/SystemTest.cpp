#include "Core/DataIO/System.h"

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
#include "Core/Platform/Exceptions.h"
#include "tests/Core/DataIO/FolderTest.h"

namespace Vantor::DataIO::File {
namespace {

namespace fs = std::filesystem;
using Exceptions::IOError;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::ThrowsMessage;

class FileAttributesTest : public FolderTest {
 protected:
  void SetUp() override {
    FolderTest::SetUp();
    create(folder_ / "a", "old");
  }

  void replace(const Path& path) {
    AtomicFile file(path);
    file.write(reinterpret_cast<const uint8*>("new"), 3);
    file.commit();
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

}  // namespace
}  // namespace Vantor::DataIO::File
