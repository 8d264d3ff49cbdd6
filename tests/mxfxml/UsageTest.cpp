#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Program.h"

namespace Vantor::Tool {
namespace {

using testing::AllOf;
using testing::HasSubstr;

void expectUsageError(const std::vector<std::string>& arguments, const std::string& message) {
  const Result result = run(arguments);
  EXPECT_EQ(result.exitCode, 2) << message;
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "mxfxml: " + message + "\n");
}

TEST(Usage, HelpListsTheSubcommands) {
  for (const char* option : {"--help", "-h"}) {
    const Result result = run({option});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, AllOf(HasSubstr("mxfxml [OPTIONS] SUBCOMMAND"), HasSubstr("export"), HasSubstr("info")));
    EXPECT_EQ(result.err, "");
  }
}

TEST(Usage, HelpOfASubcommandListsItsOptions) {
  const Result result = run({"export", "--help"});
  EXPECT_EQ(result.exitCode, 0);
  for (const char* option :
       {"INPUT", "-o,--output", "--flat", "--structural-only", "--start", "--encoding", "--partition"}) {
    EXPECT_THAT(result.out, HasSubstr(option));
  }
  EXPECT_THAT(run({"info", "--help"}).out, AllOf(HasSubstr("INPUT"), HasSubstr("--partition")));
}

TEST(Usage, VersionIsOneLine) {
  const Result result = run({"--version"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, "mxfxml 0.1.0\n");
  EXPECT_EQ(result.err, "");
}

TEST(Usage, DemandsOneSubcommand) {
  expectUsageError({}, "A subcommand is required; see mxfxml --help");
  expectUsageError({"dance"}, "A subcommand is required; see mxfxml --help");
}

TEST(Usage, DemandsAnInput) {
  expectUsageError({"export"}, "INPUT is required; see mxfxml export --help");
  expectUsageError({"info"}, "INPUT is required; see mxfxml info --help");
  expectUsageError({"export", ""}, "INPUT: the file name is empty; see mxfxml export --help");
}

TEST(Usage, RefusesWhatItDoesNotKnow) {
  expectUsageError({"export", "a.mxf", "--fast"},
                   "The following argument was not expected: --fast; see mxfxml export --help");
  expectUsageError({"export", "a.mxf", "b.xml"},
                   "The following argument was not expected: b.xml; see mxfxml export --help");
}

TEST(Usage, RefusesBadValuesOfOptions) {
  expectUsageError({"export", "a.mxf", "--encoding", "latin-1"},
                   "--encoding: 'latin-1' is no encoding: expected 'utf-8' or 'utf-16'; see mxfxml export --help");
  for (const char* text : {"middle", "1.5", "4294967296", ""}) {
    expectUsageError(
        {"info", "a.mxf", "--partition", text},
        "--partition: '" + std::string(text) +
            "' names no partition: expected 'header', 'footer' or a number from 0; see mxfxml info --help");
  }
  for (const std::string command : {"export", "import", "set"}) {
    expectUsageError({command, "a.mxf", "-o", ""},
                     "--output: the file name is empty; see mxfxml " + command + " --help");
  }
}

TEST(Usage, RefusesAnOptionWithoutItsValueOrGivenTwice) {
  for (const auto& arguments : std::vector<std::vector<std::string>>{
           {"export", "a.mxf", "-o"}, {"export", "a.mxf", "--start"}, {"export", "a.mxf", "-o", "a", "-o", "b"}}) {
    const Result result = run(arguments);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, HasSubstr("; see mxfxml export --help\n"));
  }
}

TEST(Usage, HelpThatCannotBeWrittenIsAFailure) {
  for (const char* option : {"--help", "--version"}) {
    const Result result = run({option}, Out::kFullDevice);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "mxfxml: cannot write to standard output: No space left on device\n");
  }
}

}  // namespace
}  // namespace Vantor::Tool
