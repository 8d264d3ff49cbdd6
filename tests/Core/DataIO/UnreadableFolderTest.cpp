#ifdef __linux__

#include <gmock/gmock.h>
#include <unistd.h>

#include <functional>
#include <iterator>
#include <string>

#include "Core/DataIO/UndoJournal.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Path.h"
#include "tests/Core/DataIO/FolderTest.h"
#include "tests/Core/DataIO/StoppedProcess.h"

/// Changes in place where the names in a folder cannot be flushed to the medium.
namespace Vantor::DataIO::File {
namespace {

namespace fs = std::filesystem;
using Exceptions::IOError;

constexpr uid_t kNobody = 65534;

/// A folder that cannot be flushed, since it cannot be read, with the file in it.
class UnreadableFolderTest : public FolderTest {
 protected:
  void SetUp() override {
    FolderTest::SetUp();
    fs::create_directory(sub_ = fs::canonical(folder_) / "sub");
    create(file_ = sub_ / "a.mxf", kBefore);
    if (::geteuid() != 0) return;
    for (const Path& path : {file_, sub_}) ASSERT_EQ(::chown(path.c_str(), kNobody, kNobody), 0);
  }
  void TearDown() override {
    fs::permissions(sub_, fs::perms::owner_all);
    FolderTest::TearDown();
  }

  void close() const { fs::permissions(sub_, fs::perms::owner_write | fs::perms::owner_exec); }
  /// As a user who has to obey permissions.
  static Ending runAsNobody(const std::function<bool()>& work) {
    return runWithFileSizeLimit(1 << 20, [&] {
      if (::geteuid() == 0 && ::setuid(kNobody) != 0) ::_exit(1);
      if (!work()) ::_exit(1);
    });
  }

  const std::string kBefore = "abcdefghij";
  const std::string kAfter = "abc123ghij";
  const Bytes kDigits = {'1', '2', '3'};
  Path file_;
  Path sub_;
};

TEST_F(UnreadableFolderTest, IsNamedWhenTheChangeCannotBegin) {
  close();
  EXPECT_EQ(runAsNobody([&] {
              try {
                changeInPlace(file_, stateOf(file_), {{3, kDigits}});
              } catch (const IOError& error) {
                return error.message() ==
                       "cannot flush the folder '" + Platform::pathToUTF8(sub_) + "': Permission denied";
              }
              return false;
            }),
            Ending::kFinished);
  fs::permissions(sub_, fs::perms::owner_all);
  EXPECT_EQ(contents(file_), kBefore);
  EXPECT_EQ(std::distance(fs::directory_iterator(sub_), {}), 1);
}

TEST_F(UnreadableFolderTest, LeavesAFinishedChangeThatAPowerFailureMayUndo) {
  for (const OldBytes oldBytes : {OldBytes::kDrop, OldBytes::kKeep}) {
    create(file_, kBefore);
    EXPECT_EQ(
        runAsNobody([&] {
          const auto writeAndClose = [&](FileUpdate& file) {
            file.write(3, kDigits.data(), kDigits.size());
            close();
          };
          return changeInPlace(file_, stateOf(file_), {{3, kDigits}}, writeAndClose, oldBytes) == Durability::kAtomic;
        }),
        Ending::kFinished);
    fs::permissions(sub_, fs::perms::owner_all);
    EXPECT_EQ(contents(file_), kAfter);
    EXPECT_FALSE(hasJournal(file_));
    EXPECT_EQ(fs::exists(undoPath(file_)), oldBytes == OldBytes::kKeep);
  }
}

TEST_F(UnreadableFolderTest, KeepsAChangeFromBeingUndone) {
  changeInPlace(file_, stateOf(file_), {{3, kDigits}}, {}, OldBytes::kKeep);
  const bool isRoot = ::geteuid() == 0;
  ASSERT_TRUE(!isRoot || ::chown(undoPath(file_).c_str(), kNobody, kNobody) == 0);
  close();
  EXPECT_EQ(runAsNobody([&] {
              try {
                undo(file_);
              } catch (const IOError& error) {
                return error.message() ==
                       "cannot undo the change of '" + Platform::pathToUTF8(file_) + "': its folder cannot be flushed";
              }
              return false;
            }),
            Ending::kFinished);
  fs::permissions(sub_, fs::perms::owner_all);
  EXPECT_EQ(contents(file_), kAfter);
  EXPECT_FALSE(hasJournal(file_));
  EXPECT_EQ(undo(file_), Undoing::kUndone);
}

}  // namespace
}  // namespace Vantor::DataIO::File

#endif
