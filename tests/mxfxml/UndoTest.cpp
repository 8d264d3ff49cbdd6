#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "Core/DataIO/UndoJournal.h"
#include "Program.h"
#include "ScratchFolder.h"

namespace Vantor::Tool {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

constexpr const char* kUndoneSample = "gst-audio-ac3.mxf";

class Undo : public testing::Test {
 protected:
  Undo() { fs::copy_file(sample(kUndoneSample), path()); }

  std::string path() const { return folder_.path("a.mxf"); }
  Result undone() const { return run({"undo", path()}); }
  bool isAsItWas() const { return readFile(path()) == readFile(sample(kUndoneSample)); }

  /// Changes the name of the writer in the header partition, and keeps its old bytes.
  void change() const {
    const uint64 at = readFile(path()).find(std::string("\0G\0S\0t", 6));
    DataIO::File::changeInPlace(path(), DataIO::File::stateOf(path()), {{at, {0, 'X', 0, 'Y', 0, 'Z'}}}, {},
                                DataIO::File::OldBytes::kKeep);
    ASSERT_FALSE(isAsItWas());
  }

  const ScratchFolder folder_;
};

TEST_F(Undo, PutsTheOldBytesBackOnce) {
  change();
  EXPECT_EQ(run({"export", path()}).exitCode, 0);
  EXPECT_THAT(folder_.files(), ElementsAre("a.mxf", "a.mxf.vantor-undo"));
  const Result result = undone();
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, "the file is as it was before its last change\n");
  EXPECT_EQ(result.err, "");
  EXPECT_TRUE(isAsItWas());
  EXPECT_THAT(folder_.files(), ElementsAre("a.mxf"));
  const Result again = undone();
  EXPECT_EQ(again.exitCode, 1);
  EXPECT_EQ(again.out, "");
  EXPECT_EQ(again.err,
            "mxfxml: " + path() + ": no change of the file has kept its old bytes; there is nothing to put back\n");
}

TEST_F(Undo, TakesManyFilesAndFailsWhereOneHasNothingKept) {
  change();
  const auto other = folder_.path("b.mxf");
  fs::copy_file(sample(kUndoneSample), other);
  const Result result = run({"undo", other, path()});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, path() + ": the file is as it was before its last change\n");
  EXPECT_EQ(result.err,
            "mxfxml: " + other + ": no change of the file has kept its old bytes; there is nothing to put back\n");
  EXPECT_TRUE(isAsItWas());
}

TEST_F(Undo, FailsWhereItWasStoppedItself) {
  change();
  const std::string real = fs::canonical(path()).string();
  fs::rename(real + ".vantor-undo", real + ".vantor-journal");
  const std::string changed = readFile(path());
  const Result result = undone();
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err, "mxfxml: cannot undo the change of '" + real +
                            "': an earlier change of it was stopped half-way; recover it first\n");
  EXPECT_TRUE(readFile(path()) == changed);
  EXPECT_EQ(run({"recover", path()}).exitCode, 0);
  EXPECT_TRUE(isAsItWas());
}

TEST_F(Undo, FailsWhereTheFileWasChangedSince) {
  change();
  ASSERT_EQ(run({"set", path(), "Identification.ApplicationName=Ed"}).exitCode, 0);
  const std::string changed = readFile(path());
  const Result result = undone();
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "mxfxml: cannot undo the change of '" + fs::canonical(path()).string() +
                            "': it was changed once more since, or is another file\n");
  EXPECT_TRUE(readFile(path()) == changed);
}

TEST_F(Undo, FailsWhereThereIsNoSuchFile) {
  fs::remove(path());
  const Result result = undone();
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err, "mxfxml: cannot undo the change of '" + path() + "': there is no such file\n");
}

TEST_F(Undo, LeavesAFileAsItIsThatHasTheOldBytesAlready) {
  change();
  fs::copy_file(sample(kUndoneSample), path(), fs::copy_options::overwrite_existing);
  EXPECT_EQ(undone().out, "the file is as it was before its last change already; the kept bytes are removed\n");
  EXPECT_TRUE(isAsItWas());
  EXPECT_THAT(folder_.files(), ElementsAre("a.mxf"));
}

}  // namespace
}  // namespace Vantor::Tool
