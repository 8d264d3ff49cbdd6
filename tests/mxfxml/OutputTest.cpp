#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "Program.h"
#include "ScratchFolder.h"

namespace Vantor::Tool {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

void expectFailure(const Result& result, const std::string& message) {
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "mxfxml: " + message + "\n");
}

TEST(Output, AFileGetsTheSameBytesAsStandardOutput) {
  const ScratchFolder folder;
  for (const char* option : {"-o", "--output"}) {
    const Result result = run({"export", sample("op1a.mxf"), option, folder.path("out.xml")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(readFile(folder.path("out.xml")), run({"export", sample("op1a.mxf")}).out);
    EXPECT_THAT(folder.files(), ElementsAre("out.xml"));
  }
}

TEST(Output, AnExistingFileIsReplaced) {
  const ScratchFolder folder;
  writeFile(folder.path("out.xml"), std::string(1 << 20, 'x'));
  EXPECT_EQ(run({"export", sample("op1a.mxf"), "-o", folder.path("out.xml")}).exitCode, 0);
  EXPECT_EQ(readFile(folder.path("out.xml")), run({"export", sample("op1a.mxf")}).out);
}

TEST(Output, AnExistingFileStaysWhenTheInputIsDamaged) {
  const ScratchFolder folder;
  writeFile(folder.path("cut.mxf"), readFile(sample("op1a.mxf")).substr(0, 4000));
  writeFile(folder.path("out.xml"), "precious");
  EXPECT_EQ(run({"export", folder.path("cut.mxf"), "-o", folder.path("out.xml")}).exitCode, 1);
  EXPECT_EQ(readFile(folder.path("out.xml")), "precious");
  EXPECT_THAT(folder.files(), ElementsAre("cut.mxf", "out.xml"));
}

TEST(Output, NothingAppearsWhenTheInputIsDamaged) {
  const ScratchFolder folder;
  writeFile(folder.path("cut.mxf"), readFile(sample("op1a.mxf")).substr(0, 4000));
  EXPECT_EQ(run({"export", folder.path("cut.mxf"), "-o", folder.path("out.xml")}).exitCode, 1);
  EXPECT_THAT(folder.files(), ElementsAre("cut.mxf"));
}

TEST(Output, AnExistingFileStaysWhenTheNewOneGrowsTooLarge) {
  const ScratchFolder folder;
  writeFile(folder.path("out.xml"), "precious");
  const Result result = runLimited("ulimit -f 1", {"export", sample("op1a.mxf"), "-o", folder.path("out.xml")});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err,
              AllOf(StartsWith("mxfxml: "), EndsWith("'" + folder.path("out.xml") + "': File too large\n")));
  EXPECT_EQ(readFile(folder.path("out.xml")), "precious");
  EXPECT_THAT(folder.files(), ElementsAre("out.xml"));
}

TEST(Output, AFullDeviceIsAFailure) {
  const Result result = run({"export", sample("op1a.mxf"), "-o", "/dev/full"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, AllOf(StartsWith("mxfxml: "), EndsWith("'/dev/full': No space left on device\n"),
                                Not(HasSubstr("op1a.mxf"))));
}

TEST(Output, AFolderThatCannotBeWrittenToIsAFailure) {
  const ScratchFolder folder;
  const std::string output = folder.path("missing/out.xml");
  expectFailure(run({"export", sample("op1a.mxf"), "-o", output}),
                "cannot create a temporary file to write '" + output + "': No such file or directory");
  EXPECT_THAT(folder.files(), ElementsAre());
}

TEST(Output, AFolderWithoutPermissionIsAFailure) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may write anywhere";
  const ScratchFolder folder;
  fs::permissions(folder.path(), fs::perms::owner_read | fs::perms::owner_exec);
  const std::string output = folder.path("out.xml");
  expectFailure(run({"export", sample("op1a.mxf"), "-o", output}),
                "cannot create a temporary file to write '" + output + "': Permission denied");
  fs::permissions(folder.path(), fs::perms::owner_all);
}

TEST(Output, AFolderIsNoOutput) {
  const ScratchFolder folder;
  expectFailure(run({"export", sample("op1a.mxf"), "-o", folder.path().string()}),
                "cannot write '" + folder.path().string() + "': Is a directory");
}

TEST(Output, AReadOnlyFileIsReplacedByNoCommand) {
  const ScratchFolder folder;
  const std::string document = folder.path("in.xml"), output = folder.path("out");
  ASSERT_EQ(run({"export", sample("op1a.mxf"), "-o", document}).exitCode, 0);
  writeFile(output, "precious");
  fs::permissions(output, fs::perms::owner_read | fs::perms::group_read);
  for (const auto& command :
       std::vector<std::vector<std::string>>{{"export", sample("op1a.mxf"), "-o", output},
                                             {"import", document, "-o", output},
                                             {"import", document, "--into", sample("op1a.mxf"), "-o", output},
                                             {"set", sample("op1a.mxf"), "Preface.ByteOrder=1", "-o", output}}) {
    expectFailure(run(command), "cannot change '" + output + "': it is read-only");
    EXPECT_EQ(readFile(output), "precious");
    EXPECT_THAT(folder.files(), ElementsAre("in.xml", "out"));
  }
}

TEST(Output, GoesToWhereASymbolicLinkLeads) {
  const ScratchFolder folder;
  fs::create_symlink("real.xml", folder.path("link.xml"));
  EXPECT_EQ(run({"export", sample("op1a.mxf"), "-o", folder.path("link.xml")}).exitCode, 0);
  EXPECT_TRUE(fs::is_symlink(folder.path("link.xml")));
  EXPECT_EQ(readFile(folder.path("real.xml")), run({"export", sample("op1a.mxf")}).out);
  EXPECT_THAT(folder.files(), ElementsAre("link.xml", "real.xml"));
}

TEST(Output, TheInputIsNoOutput) {
  const ScratchFolder folder;
  const std::string input = folder.path("in.mxf");
  const std::string bytes = readFile(sample("op1a.mxf"));
  writeFile(input, bytes);
  fs::create_symlink(input, folder.path("link.xml"));
  fs::create_hard_link(input, folder.path("twin.xml"));
  for (const std::string& output : {input, folder.path("./in.mxf"), folder.path("link.xml"), folder.path("twin.xml")}) {
    expectFailure(run({"export", input, "-o", output}), "the output '" + output + "' is the input itself");
    EXPECT_EQ(readFile(input), bytes);
  }
}

TEST(Output, AMissingInputIsNotTakenForAMissingOutput) {
  const ScratchFolder folder;
  const std::string missing = folder.path("missing.mxf");
  expectFailure(run({"export", missing, "-o", missing}), "cannot open '" + missing + "': No such file or directory");
}

TEST(Output, AFullStandardOutputIsAFailure) {
  expectFailure(run({"export", sample("op1a.mxf")}, Out::kFullDevice),
                "cannot write to standard output: No space left on device");
}

TEST(Output, APipeThatNobodyReadsAnyMoreNeedsNoMessage) {
  for (const char* command : {"export", "info", "verify"}) {
    const Result result = run({command, sample("op1a.mxf")}, Out::kPipeWithoutReader);
    EXPECT_EQ(result.exitCode, 1) << command;
    EXPECT_EQ(result.err, "") << command;
  }
}

TEST(Output, AClosedStandardOutputIsAFailure) {
  expectFailure(run({"export", sample("op1a.mxf")}, Out::kClosed),
                "cannot write to standard output: Bad file descriptor");
}

TEST(Output, AClosedStandardOutputIsNotNeededForAFile) {
  const ScratchFolder folder;
  const Result result = run({"export", sample("op1a.mxf"), "-o", folder.path("out.xml")}, Out::kClosed, Err::kClosed);
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(readFile(folder.path("out.xml")), run({"export", sample("op1a.mxf")}).out);
}

TEST(Output, AMessageNeverGoesIntoAFile) {
  const ScratchFolder folder;
  writeFile(folder.path("cut.mxf"), readFile(sample("op1a.mxf")).substr(0, 4000));
  const std::string before = readFile(folder.path("cut.mxf"));
  EXPECT_EQ(run({"export", folder.path("cut.mxf")}, Out::kClosed, Err::kClosed).exitCode, 1);
  EXPECT_EQ(readFile(folder.path("cut.mxf")), before);
}

TEST(Output, StandardOutputStaysEmptyWhenTheInputIsDamaged) {
  const ScratchFolder folder;
  const std::string whole = readFile(sample("op1a.mxf"));
  for (const std::size_t size : {1u, 100u, 200u, 1000u, 4000u}) {
    writeFile(folder.path("cut.mxf"), whole.substr(0, size));
    const Result result = run({"export", folder.path("cut.mxf")});
    EXPECT_EQ(result.exitCode, 1) << size;
    EXPECT_EQ(result.out, "") << size;
    EXPECT_THAT(result.err, StartsWith("mxfxml: " + folder.path("cut.mxf") + ": ")) << size;
  }
}

}  // namespace
}  // namespace Vantor::Tool
