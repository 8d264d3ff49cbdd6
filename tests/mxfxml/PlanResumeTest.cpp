#include <gmock/gmock.h>

#include <csignal>

#include "PlannedFiles.h"
#include "tests/Core/MXF/WholeFile.h"

/// What is left of edits of many files that are stopped, and how they go on.
namespace Vantor::Tool {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr std::size_t kEssenceSize = std::size_t{3} << 20;
constexpr std::size_t kMany = 24;
constexpr const char* kSmallFilesOnly = "ulimit -f 1024";  // blocks of 512 or 1024 bytes, as the shell has them

class PlanResume : public PlannedFiles {
 protected:
  /// A file of some MiB, which has to be written anew for a long value.
  void addLargeFile(const std::string& name) const {
    MXF::FileLayout layout;
    layout.partitions.resize(2);
    layout.partitions[0].kind = KLV::PartitionKind::kHeader;
    layout.partitions[0].metadata = MXF::metadataIn(sample(kOriginal), 0);
    layout.partitions[1].essence = MXF::klv(MXF::kPictureElement, Bytes(kEssenceSize, 0x55));
    layout.partitions[1].bodySID = 1;
    const Bytes bytes = MXF::fileOf(layout);
    writeFile(path(name), {bytes.begin(), bytes.end()});
  }
  void writeLongValues(const Names& names) const {
    std::string text = "file,path,value\n";
    for (const auto& name : names) text += name + "," + kName + "," + std::string(12000, 'x') + "\n";
    writeFile(table(), text);
  }
  Result setLimited(const Names& options) const {
    Names arguments = {"set", "--plan", table()};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return runLimited(kSmallFilesOnly, arguments);
  }

  /// Many files with a table for all.
  Names addMany() const {
    Names names;
    for (std::size_t i = 0; i < kMany; ++i) names.push_back("file" + std::to_string(i) + ".mxf");
    addFiles(names);
    writeTable(names);
    return names;
  }
  bool isChanged(const std::string& name) const { return !isUntouched(name); }
};

TEST_F(PlanResume, StopsAtAFileThatCannotBeWrittenAndGoesOnLater) {
  addFiles({"a.mxf", "c.mxf"});
  addLargeFile("b.mxf");
  writeLongValues({"a.mxf", "b.mxf", "c.mxf"});
  const auto large = readFile(path("b.mxf"));
  const Result stopped = setLimited({"--report", path("report.csv")});
  EXPECT_EQ(stopped.exitCode, 1);
  EXPECT_EQ(lastLine(stopped.out), "1 file changed, 1 failed, 1 not reached\n");
  EXPECT_EQ(lastLine(inFolder(stopped.err)),
            "mxfxml: FOLDER/plan.csv: 1 of 3 files could not be written; the same command does the rest\n");
  EXPECT_TRUE(isChanged("a.mxf") && isUntouched("c.mxf"));
  EXPECT_EQ(readFile(path("b.mxf")), large);
  EXPECT_THAT(report(), HasSubstr("x,failed,"));
  EXPECT_THAT(report(), HasSubstr("x,not reached,\r\n"));
  const auto first = readFile(path("a.mxf"));
  const Result rest = set();
  EXPECT_EQ(rest.exitCode, 0) << rest.err;
  EXPECT_EQ(lastLine(rest.out), "2 files changed, 1 already so\n");
  EXPECT_EQ(readFile(path("a.mxf")), first);
}

TEST_F(PlanResume, GoesOnBehindAFileThatCannotBeWrittenOnRequest) {
  addFiles({"a.mxf", "c.mxf"});
  addLargeFile("b.mxf");
  writeLongValues({"a.mxf", "b.mxf", "c.mxf"});
  const Result result = setLimited({"--keep-going"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(lastLine(result.out), "2 files changed, 1 failed\n");
}

TEST_F(PlanResume, DoesTheRestOfCopies) {
  for (const Names& options : {Names{}, {"--sign"}}) {
    addFiles({"a.mxf", "c.mxf"});
    addLargeFile("b.mxf");
    writeLongValues({"a.mxf", "b.mxf", "c.mxf"});
    Names intoFolder = {"-o", path("out")};
    intoFolder.insert(intoFolder.end(), options.begin(), options.end());
    EXPECT_EQ(lastLine(setLimited(intoFolder).out), "1 file changed, 1 failed, 1 not reached\n");
    const auto first = readFile(path("out/a.mxf"));
    const Result rest = set(intoFolder);
    EXPECT_EQ(lastLine(rest.out), "2 files changed, 1 already so\n") << rest.err;
    EXPECT_EQ(readFile(path("out/a.mxf")), first);
    fs::remove_all(path("out"));
    for (const char* name : {"a.mxf", "b.mxf", "c.mxf"}) fs::remove(path(name));
  }
}

TEST_F(PlanResume, WritesACopyAnewWhoseFileOrPlanHasChanged) {
  addFiles({"a.mxf", "b.mxf"});
  writeTable({"a.mxf", "b.mxf"});
  writeFile(table(), readFile(table()) + "a.mxf,Preface.ByteOrder,18761\r\n");
  EXPECT_EQ(set({"-o", path("out")}).exitCode, 0);
  EXPECT_EQ(run({"set", path("b.mxf"), "Timecode[1].StartTimecode=5"}).exitCode, 0);
  writeTable({"a.mxf", "b.mxf"});  // without a row that was there
  EXPECT_EQ(lastLine(set({"-o", path("out")}).out), "2 files changed\n");
  EXPECT_THAT(diff("out/a.mxf"), testing::Not(HasSubstr("ByteOrder")));
  EXPECT_THAT(diff("out/b.mxf"), HasSubstr("StartTimecode"));
}

TEST_F(PlanResume, SignsNoFileAgain) {
  addFiles({"a.mxf", "b.mxf"});
  writeTable({"a.mxf"});
  EXPECT_EQ(set({"--sign"}).exitCode, 0);
  const auto signedFile = readFile(path("a.mxf"));
  writeTable({"a.mxf", "b.mxf"});
  EXPECT_EQ(lastLine(set({"--sign"}).out), "1 file changed, 1 already so\n");
  EXPECT_EQ(readFile(path("a.mxf")), signedFile);
}

TEST_F(PlanResume, WritesNothingWithAReadOnlyFileAmongThem) {
  addFiles({"a.mxf", "b.mxf", "c.mxf"});
  writeTable({"a.mxf", "b.mxf", "c.mxf"});
  fs::permissions(path("b.mxf"), fs::perms::owner_read);
  EXPECT_EQ(lastLine(set().out), "1 file refused, 2 not reached\n");
  EXPECT_TRUE(isUntouched("a.mxf") && isUntouched("c.mxf"));
  EXPECT_EQ(set({"-o", path("out")}).exitCode, 0);
  fs::permissions(path("b.mxf"), fs::perms::owner_write, fs::perm_options::add);
  EXPECT_EQ(lastLine(set().out), "3 files changed\n");
}

TEST_F(PlanResume, DoesTheRestAfterAKill) {
  const auto names = addMany();
  for (const std::size_t last : {std::size_t{0}, kMany / 3, kMany - 2}) {
    for (const auto& name : names) {
      fs::copy_file(sample(kOriginal), path(name), fs::copy_options::overwrite_existing);
    }
    StartedProgram program({"set", "--plan", table(), "--sign"});
    program.waitUntil([&] { return isChanged(names[last]); });
    program.kill();
    EXPECT_TRUE(isChanged(names[last]));
    const Result rest = set({"--sign"});
    EXPECT_EQ(rest.exitCode, 0) << rest.err;
    for (const auto& name : names) EXPECT_TRUE(hasName(name, "Writer of " + name)) << name;
    EXPECT_EQ(lastLine(set({"--sign"}).out), std::to_string(kMany) + " files already so\n");
  }
}

TEST_F(PlanResume, ReportsWhatAnInterruptKeptItFrom) {
  const auto names = addMany();
  StartedProgram program({"set", "--plan", table(), "--report", path("report.csv")});
  program.waitUntil([&] { return isChanged(names[0]); });
  program.stop();
  program.send(SIGINT);
  const Result result = program.resume();
  ASSERT_EQ(result.exitCode, -SIGINT);
  EXPECT_THAT(inFolder(result.err), HasSubstr("FOLDER/plan.csv: stopped; the same command does the rest\n"));
  EXPECT_THAT(report(), HasSubstr("Writer of file0.mxf,changed,\r\n"));
  EXPECT_THAT(report(), HasSubstr("Writer of file23.mxf,not reached,\r\n"));
  EXPECT_TRUE(isUntouched(names.back()));
  EXPECT_EQ(set().exitCode, 0);
  EXPECT_TRUE(isChanged(names.back()));
}

TEST_F(PlanResume, LeavesAFileAloneThatChangedSinceItWasChecked) {
  const auto names = addMany();
  StartedProgram program({"set", "--plan", table()});
  program.waitUntil([&] { return isChanged(names[0]); });
  program.stop();
  EXPECT_EQ(run({"set", path(names.back()), "Preface.ByteOrder=18761"}).exitCode, 0);
  const auto changed = readFile(path(names.back()));
  const Result result = program.resume();
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(lastLine(result.out), HasSubstr("23 files changed, 1 failed\n"));
  EXPECT_EQ(readFile(path(names.back())), changed);
}

}  // namespace
}  // namespace Vantor::Tool
