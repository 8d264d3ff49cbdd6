#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "Program.h"

namespace Vantor::Tool {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

void expectUsageError(const std::vector<std::string>& arguments, const std::string& message) {
  const Result result = run(arguments);
  EXPECT_EQ(result.exitCode, 2) << message;
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "mxfxml: " + message + "\n");
}

/// What a help text explains, line by line: arguments, options or subcommands.
/// The first words of indented lines, but for examples.
std::vector<std::string> namesIn(const std::string& help) {
  std::vector<std::string> names;
  std::istringstream lines(help);
  for (std::string line; std::getline(lines, line);) {
    if (line.size() < 3 || line.compare(0, 2, "  ") != 0 || line[2] == ' ') continue;
    if (line.compare(2, 7, "mxfxml ") == 0) continue;
    names.push_back(line.substr(2, line.find(' ', 2) - 2));
  }
  return names;
}

TEST(Usage, HelpListsTheSubcommands) {
  for (const char* option : {"--help", "-h"}) {
    const Result result = run({option});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("mxfxml [OPTIONS] SUBCOMMAND"));
    EXPECT_THAT(namesIn(result.out),
                ElementsAre("-h,--help", "--version", "info", "get", "show", "diff", "check", "dictionary", "set",
                            "edit", "undo", "recover", "export", "import", "verify"));
    EXPECT_THAT(result.out, AllOf(HasSubstr("\nLook:\n"), HasSubstr("\nEdit:\n"), HasSubstr("\nConvert:\n")));
    EXPECT_EQ(result.err, "");
  }
}

TEST(Usage, HelpKeepsNamesApartFromDescriptions) {
  constexpr std::size_t kDescription = 30;  // its column
  constexpr std::size_t kLongestName = 40;  // without a description in its line
  std::istringstream commands(run({"__complete", ""}).out);
  for (std::string command; std::getline(commands, command);) {
    const auto help = run({command, "--help"}).out;
    std::istringstream lines(help.substr(0, help.find("\nExamples:\n")));
    for (std::string line; std::getline(lines, line);) {
      if (line.size() < 3 || line.compare(0, 2, "  ") != 0 || line[2] == ' ') continue;
      EXPECT_EQ(line.find(':'), line.find(':', std::min(line.size(), kDescription))) << command << ": " << line;
      const auto blanks = line.find("  ", 2);
      if (blanks == std::string::npos) {
        EXPECT_LE(line.size(), kLongestName) << command << ": " << line;
      } else {
        EXPECT_EQ(line.find_first_not_of(' ', blanks), kDescription) << command << ": " << line;
      }
    }
  }
}

TEST(Usage, HelpOfAnOptionEndsWithTheOptionsThatItGoesWith) {
  const auto help = run({"set", "--help"}).out;
  EXPECT_THAT(help, HasSubstr("\n                              Not with --from, --remove, --start, INPUT,"));
  EXPECT_THAT(help, HasSubstr("what became of each row of the plan\n                              Only with --plan\n"));
}

TEST(Usage, HelpOfASubcommandListsItsOptions) {
  using Names = std::vector<std::string>;
  for (const auto& [command, names] : std::vector<std::pair<std::string, Names>>{
           {"export",
            {"INPUT", "-h,--help", "-o,--output", "--format", "--json", "--flat", "--structural-only", "--start",
             "--exact", "--encoding", "--partition", "--salvage", "--vocabulary", "--dictionary", "--own-dictionary",
             "--limit"}},
           {"import", {"INPUT",          "-h,--help",
                       "-o,--output",    "--into",
                       "--in-place",     "--expect-unchanged",
                       "--merge-anyway", "--structural-only",
                       "--start",        "--partition",
                       "--format",       "--exact",
                       "--strict",       "--plan",
                       "--report",       "--only",
                       "--ignore",       "--sign",
                       "--keep-undo",    "--force",
                       "--dry-run",      "--keep-going",
                       "--dictionary",   "--own-dictionary",
                       "--limit"}},
           {"verify",
            {"INPUT", "-h,--help", "--flat", "--exact", "--strict", "--partition", "--salvage", "--json",
             "--vocabulary", "--dictionary", "--own-dictionary", "--limit"}},
           {"info",
            {"INPUT", "-h,--help", "--partition", "--salvage", "--no-salvage", "--partitions", "--sets", "--all-sets",
             "--all", "--json", "--color", "--dictionary", "--own-dictionary", "--no-own-dictionary", "--limit"}},
           {"get",
            {"INPUT", "Set.Property", "-h,--help", "-p,--property", "--with-names", "--no-names", "--json", "--table",
             "--partition", "--salvage", "--dictionary", "--own-dictionary", "--no-own-dictionary", "--limit"}},
           {"show",
            {"INPUT", "-h,--help", "--set", "--depth", "--refs", "--color", "--partition", "--dictionary",
             "--own-dictionary", "--no-own-dictionary", "--limit"}},
           {"set", {"INPUT",     "Set.Property=VALUE", "-h,--help",    "--remove",         "--from",
                    "--start",   "-o,--output",        "--partition",  "--plan",           "--report",
                    "--only",    "--ignore",           "--sign",       "--keep-undo",      "--force",
                    "--dry-run", "--keep-going",       "--dictionary", "--own-dictionary", "--limit"}},
           {"edit",
            {"INPUT", "-h,--help", "-o,--output", "--format", "--json", "--start", "--partition", "-y,--yes", "--only",
             "--ignore", "--sign", "--keep-undo", "--force", "--dry-run", "--keep-going", "--vocabulary",
             "--dictionary", "--own-dictionary", "--limit"}},
           {"diff",
            {"INPUT", "OTHER", "-h,--help", "--tree", "--color", "--strict", "--ignore-ids", "--partition", "--json",
             "--dictionary", "--own-dictionary", "--no-own-dictionary", "--limit"}},
           {"check",
            {"FILE", "-h,--help", "--ignore", "--rules", "--salvage", "--json", "--dictionary", "--own-dictionary",
             "--limit"}},
           {"recover", {"INPUT", "-h,--help"}},
           {"undo", {"INPUT", "-h,--help"}},
           {"dictionary",
            {"NAME", "-h,--help", "--json", "--dictionary", "--learn", "-o,--output", "--partition", "--limit"}}}) {
    const Result result = run({command, "--help"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(namesIn(result.out), names) << command;
  }
}

#if VANTOR_WITH_XQILLA
#define VANTOR_XQILLA_LINE "XQilla, library version [0-9.]+"
#else
#define VANTOR_XQILLA_LINE "without XQilla"
#endif

TEST(Usage, VersionNamesTheRegistersAndTheLibraries) {
  const Result result = run({"--version"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out,
              testing::MatchesRegex("mxfxml " VANTOR_VERSION "\nSMPTE metadata registers v[0-9]+ of 20[0-9]+\n"
                                    "Xerces-C\\+\\+ 3\\.[0-9.]+\n" VANTOR_XQILLA_LINE "\n"));
  EXPECT_EQ(result.err, "");
}

TEST(Usage, HelpOfASubcommandEndsWithExamples) {
  for (const char* command : {"info", "get", "show", "diff", "check", "dictionary", "set", "edit", "undo", "recover",
                              "export", "import", "verify"}) {
    EXPECT_THAT(run({command, "--help"}).out, HasSubstr(std::string("\nExamples:\n  mxfxml ") + command + " "))
        << command;
  }
}

TEST(Usage, DemandsOneSubcommand) { expectUsageError({}, "A subcommand is required; see mxfxml --help"); }

TEST(Usage, NamesACommandThatDoesNotExistWithTheNearestOne) {
  expectUsageError({"dance"}, "there is no command 'dance'; see mxfxml --help");
  expectUsageError({"exprot", "a.mxf"}, "there is no command 'exprot' (did you mean 'export'?); see mxfxml --help");
  expectUsageError({"Verify"}, "there is no command 'Verify' (did you mean 'verify'?); see mxfxml --help");
}

TEST(Usage, DemandsAnInput) {
  expectUsageError({"export"}, "INPUT is required; see mxfxml export --help");
  expectUsageError({"info"}, "INPUT is required; see mxfxml info --help");
}

TEST(Usage, RefusesWhatItDoesNotKnow) {
  expectUsageError({"export", "a.mxf", "--fast"},
                   "export has no option '--fast' (did you mean '--flat'?); see mxfxml export --help");
  expectUsageError({"export", "a.mxf", "b.xml"},
                   "The following argument was not expected: b.xml; see mxfxml export --help");
}

TEST(Usage, NamesTheCommandsThatHaveAnOption) {
  expectUsageError({"show", "a.mxf", "--keep-undo"},
                   "show has no option '--keep-undo'; set, edit and import have it; see mxfxml show --help");
  expectUsageError({"diff", "a.mxf", "b.mxf", "--sets=1"},
                   "diff has no option '--sets'; info has it; see mxfxml diff --help");
}

TEST(Usage, RefusesBadValuesOfOptions) {
  expectUsageError({"export", "a.mxf", "--encoding", "latin-1"},
                   "--encoding: 'latin-1' is no encoding: expected 'utf-8' or 'utf-16'; see mxfxml export --help");
  for (const char* text : {"middle", "1.5", "4294967296", ""}) {
    expectUsageError(
        {"info", "a.mxf", "--partition", text},
        "--partition: '" + std::string(text) +
            "' names no partition: expected 'header', 'footer', 'best' or a number from 0; see mxfxml info --help");
  }
}

TEST(Usage, RefusesEmptyFileNames) {
  for (const std::string command : {"export", "import", "verify", "info", "get", "set", "diff", "recover", "undo"}) {
    expectUsageError({command, ""}, "INPUT: the file name is empty; see mxfxml " + command + " --help");
  }
  for (const std::string command : {"export", "import", "set"}) {
    expectUsageError({command, "a.mxf", "-o", ""},
                     "--output: the file name is empty; see mxfxml " + command + " --help");
  }
  for (const std::string command : {"export", "import", "verify", "info", "set", "diff", "dictionary"}) {
    expectUsageError({command, "a.mxf", "--dictionary", ""},
                     "--dictionary: the file name is empty; see mxfxml " + command + " --help");
  }
  expectUsageError({"import", "a.xml", "--into", ""}, "--into: the file name is empty; see mxfxml import --help");
  expectUsageError({"diff", "a.mxf", ""}, "OTHER: the file name is empty; see mxfxml diff --help");
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
