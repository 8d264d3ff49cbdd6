#include <gtest/gtest.h>

#include "Refusal.h"

/// Other commands, and what is no command.
namespace Vantor::Tool {
namespace {

const Refusal kRefusedCommands[] = {
    {"a comparison with a file that is not there",
     {"diff", "{file}", "{out}"},
     2,
     {"cannot open '{out}': No such file or directory"}},
    {"a comparison with a document that is no XML",
     {"diff", "{file}", "{doc}"},
     2,
     {"{doc}: not well-formed XML: line 1, column 4: input ended before all started tags were ended; last tag started "
      "is 'a'"},
     kGst,
     written("<a>")},
    {"a comparison of one file", {"diff", "{file}"}, 2, {"OTHER is required; see mxfxml diff --help"}},
    {"a comparison of partitions of documents",
     {"diff", "{doc}", "{doc}", "--partition", "0"},
     2,
     {"--partition is for MXF files, and neither file is one; see mxfxml diff --help"},
     kGst,
     exportOf("gst-audio-ac3.mxf")},
    {"a check of nothing", {"check"}, 2, {"give files, or --rules; see mxfxml check --help"}},
    {"a check of a document",
     {"check", "{doc}"},
     2,
     {"{doc}: this is no MXF file: no partition pack among its first 65,536 bytes"},
     kGst,
     exportOf("gst-audio-ac3.mxf")},
    {"a check without a rule that does not exist",
     {"check", "{file}", "--ignore", "dangling-referense"},
     2,
     {"--ignore: 'dangling-referense' is no rule (did you mean 'dangling-reference'?); see mxfxml check --help"}},
    {"rules of a file", {"check", "{file}", "--rules"}, 2, {"give files, or --rules; see mxfxml check --help"}},
    {"nothing to undo",
     {"undo", "{file}"},
     1,
     {"{file}: no change of the file has kept its old bytes; there is nothing to put back"},
     kGst},
    {"a change that another one followed",
     {"undo", "{file}"},
     1,
     {"cannot undo the change of '{file}': it was changed once more since, or is another file"},
     kGst,
     both(after({"set", "{file}", "Timecode[1].StartTimecode=9", "--keep-undo"}),
          after({"set", "{file}", "Timecode[1].StartTimecode=8"}))},
    {"old bytes that are cut off",
     {"undo", "{file}"},
     1,
     {"cannot undo the change of '{file}': '{file}.vantor-undo', which has the old bytes, is damaged"},
     kGst,
     both(after({"set", "{file}", "Timecode[1].StartTimecode=9", "--keep-undo"}), cutOldBytes())},
    {"a change of a file that is not there",
     {"undo", "{file}"},
     1,
     {"cannot undo the change of '{file}': there is no such file"},
     kGst,
     removed()},
    {"nothing to recover",
     {"recover", "{file}"},
     0,
     {},
     kGst,
     nothing(),
     "no change of the file was stopped; there is nothing to put back\n"},
    {"a journal that is cut off",
     {"recover", "{file}"},
     1,
     {"cannot recover '{file}': its journal is damaged; the file has the old bytes that are left there, but may be "
      "changed where the others were; if you have a copy from before, use that; to keep it as it is, remove the "
      "journal '{file}.vantor-journal'"},
     kGst,
     journal("vantor-j")},
    {"a stopped change of a file that is not there",
     {"recover", "{file}"},
     1,
     {"cannot recover '{file}': there is no such file"},
     kGst,
     removed()},
    {"no command", {}, 2, {"A subcommand is required; see mxfxml --help"}},
    {"a command that does not exist",
     {"sett", "{file}", "Preface.ByteOrder=1"},
     2,
     {"there is no command 'sett' (did you mean 'set'?); see mxfxml --help"}},
    {"an option that does not exist",
     {"set", "{file}", "Preface.ByteOrder=1", "--dryrun"},
     2,
     {"set has no option '--dryrun' (did you mean '--dry-run'?); see mxfxml set --help"}},
    {"an option without its value",
     {"check", "{file}", "--ignore"},
     2,
     {"--ignore: 1 required RULE missing; see mxfxml check --help"}},
    {"an option of another command",
     {"check", "{file}", "--only"},
     2,
     {"check has no option '--only'; set, edit and import have it; see mxfxml check --help"}},
};

class RefusedCommand : public testing::TestWithParam<Refusal> {};

TEST(FolderForAFile, IsAnsweredWithAHintAtItsFiles) {
  const ScratchFolder folder;
  const auto name = folder.path().string();
  writeFile(folder.path("a.mxf"), "");
  const std::vector<std::vector<std::string>> commands = {{"info", name},
                                                          {"info", "--json", name},
                                                          {"show", name},
                                                          {"get", name, "Preface.FormatVersion"},
                                                          {"check", name},
                                                          {"verify", name},
                                                          {"export", name},
                                                          {"diff", name, sample("op1a.mxf")},
                                                          {"diff", sample("op1a.mxf"), name},
                                                          {"set", name, "Preface.ByteOrder=18761"},
                                                          {"dictionary", "--learn", name}};
  for (const auto& command : commands) {
    EXPECT_EQ(run(command).err,
              "mxfxml: cannot read '" + name + "': Is a directory; name files, such as " + name + "/*.mxf\n")
        << command.front();
  }
}

TEST(FolderForAFile, IsAnsweredWithoutAHintWhereItHasNoSuchFiles) {
  const ScratchFolder folder;
  const auto name = folder.path().string();
  writeFile(folder.path("a.txt"), "");
  EXPECT_EQ(run({"info", name}).err, "mxfxml: cannot read '" + name + "': Is a directory\n");
  writeFile(folder.path("B.MXF"), "");
  EXPECT_EQ(run({"info", name}).err,
            "mxfxml: cannot read '" + name + "': Is a directory; name files, such as " + name + "/*.MXF\n");
}

TEST_P(RefusedCommand, WritesNothingAndGivesTheReason) { expectRefusal(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Mistakes, RefusedCommand, testing::ValuesIn(kRefusedCommands), mistakeOf);

}  // namespace
}  // namespace Vantor::Tool
