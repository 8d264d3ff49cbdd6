#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "Program.h"
#include "PseudoTerminal.h"
#include "ScopedVariable.h"
#include "ScratchFolder.h"

/// The metadata of a file in an editor, which is a script here.
namespace Vantor::Tool {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;

constexpr const char* kRename = "sed -i s/FFmpeg/Edited/";

class EditCommandTest : public testing::Test {
 protected:
  EditCommandTest() : temporary_("TMPDIR", folder_.path("temporary").c_str()) {
    fs::create_directory(folder_.path("temporary"));
    fs::copy_file(sample("op1a.mxf"), file());
  }

  std::string file() const { return folder_.path("a.mxf"); }
  std::vector<std::string> kept() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(folder_.path("temporary"))) names.push_back(entry.path());
    std::sort(names.begin(), names.end());
    return names;
  }
  bool isUntouched() const { return readFile(file()) == readFile(sample("op1a.mxf")); }
  bool isRenamed(const std::string& path) const {
    return run({"export", path}).out.find("Edited") != std::string::npos;
  }

  /// An editor of this name that notes its arguments, and the first time runs one script, then another one.
  std::string editor(const std::string& name, const std::string& first, const std::string& later) const {
    const auto log = folder_.path("log");
    writeFile(folder_.path(name), "#!/bin/sh\nfor file; do :; done\nfile=${file%:*}\nif [ -e " + log +
                                      " ]; then again=1; fi\n" + "echo \"$@\" >>" + log +
                                      "\nif [ -z \"$again\" ]; then\n" + first + "\nelse\n" + later + "\nfi\n");
    fs::permissions(folder_.path(name), fs::perms::owner_all);
    return folder_.path(name);
  }
  std::string log() const { return readFile(folder_.path("log")); }

  Result edited(const std::string& editor, std::vector<std::string> options = {"--yes"}) const {
    const ScopedVariable visual("VISUAL", editor.c_str());
    options.insert(options.begin(), {"edit", file()});
    return run(options);
  }

  const ScratchFolder folder_;
  const ScopedVariable temporary_;
};

TEST_F(EditCommandTest, PutsTheEditsBackAndShowsThem) {
  const Result result = edited(kRename);
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_THAT(result.out, AllOf(HasSubstr("FFmpeg"), HasSubstr("Edited"), HasSubstr("written")));
  EXPECT_TRUE(isRenamed(file()));
  EXPECT_THAT(kept(), IsEmpty());
}

TEST_F(EditCommandTest, TakesJSON) {
  EXPECT_EQ(edited(kRename, {"--yes", "--format", "json"}).exitCode, 0);
  EXPECT_TRUE(isRenamed(file()));
}

TEST_F(EditCommandTest, OpensAPart) {
  const Result result = edited("sed -i -e s/FFmpeg/Edited/ -e /ContentStorage/q1",
                               {"--yes", "--start", "Identification", "--format", "json"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_TRUE(isRenamed(file()));
}

TEST_F(EditCommandTest, WritesACopy) {
  const Result result = edited(kRename, {"--yes", "-o", folder_.path("b.mxf")});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_TRUE(isUntouched());
  EXPECT_TRUE(isRenamed(folder_.path("b.mxf")));
}

TEST_F(EditCommandTest, WritesNothingWhenNothingChanged) {
  for (const char* editor : {"true", "touch", "sed -i s/FFmpeg/FFmpeg/"}) {
    const Result result = edited(editor, {"--yes", "--sign"});
    EXPECT_EQ(result.exitCode, 0) << editor;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "mxfxml: " + file() + ": nothing changed\n");
  }
  EXPECT_TRUE(isUntouched());
  EXPECT_THAT(kept(), IsEmpty());
}

TEST_F(EditCommandTest, PreviewsWithDryRun) {
  const Result result = edited(kRename, {"--dry-run"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_THAT(result.out, AllOf(HasSubstr("Edited"), HasSubstr("would be written")));
  EXPECT_TRUE(isUntouched());
  EXPECT_THAT(kept(), IsEmpty());
}

TEST_F(EditCommandTest, WritesNothingWhenTheEditorFails) {
  const Result result = edited("exit 3;");
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("the editor 'exit 3;' ended with 3; nothing is written"));
  EXPECT_THAT(kept(), IsEmpty());
  EXPECT_EQ(edited("kill -INT $$;").exitCode, 1);
  EXPECT_EQ(edited("/no/such/editor").exitCode, 1);
  EXPECT_TRUE(isUntouched());
}

TEST_F(EditCommandTest, KeepsForTheUserAloneWhatCannotBePutBack) {
  const Result result = edited("sed -i s/EditRate/EdRate/");
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_TRUE(isUntouched());
  ASSERT_EQ(kept().size(), 2u) << result.err;
  EXPECT_THAT(result.err, HasSubstr("the edited document is kept: " + kept()[1]));
  EXPECT_EQ(fs::path(kept()[1]).filename(), "a.xml");
  EXPECT_EQ(fs::status(kept()[0]).permissions(), fs::perms::owner_all);
  EXPECT_EQ(fs::status(kept()[1]).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(EditCommandTest, KeepsWhatAFailingEditorHasChanged) {
  const Result result = edited(editor("odd", "sed -i s/FFmpeg/Edited/ \"$file\"; exit 1", ":"));
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_TRUE(isUntouched());
  EXPECT_EQ(kept().size(), 2u);
}

TEST_F(EditCommandTest, AsksForAnEditor) {
  const ScopedVariable visual("VISUAL", ""), editor("EDITOR", "");
  const Result result = run({"edit", file(), "--yes"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("there is no editor to open; set VISUAL or EDITOR, such as EDITOR=nano"));
}

TEST_F(EditCommandTest, TakesTheSecondVariableWithoutTheFirst) {
  const ScopedVariable visual("VISUAL", ""), editor("EDITOR", kRename);
  EXPECT_EQ(run({"edit", file(), "--yes"}).exitCode, 0);
  EXPECT_TRUE(isRenamed(file()));
}

TEST_F(EditCommandTest, NeedsATerminalToAsk) {
  const Result result = edited(kRename, {});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_THAT(result.err, HasSubstr("without a terminal, nobody can be asked; --yes writes the changes"));
  EXPECT_TRUE(isUntouched());
}

TEST_F(EditCommandTest, RefusesAFileThatChangedMeanwhile) {
  const auto script = programPath() + " set " + file() +
                      " Identification.ToolkitVersion=2.0.0.0 >/dev/null; sed -i s/FFmpeg/Edited/ \"$file\"";
  const Result result = edited(editor("busy", script, ":"));
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("the file has changed since the document was exported"));
  EXPECT_FALSE(isRenamed(file()));
  EXPECT_EQ(kept().size(), 2u);
}

TEST_F(EditCommandTest, SaysHowToMergeWhatIsKeptIntoAFileThatChangedMeanwhile) {
  const auto script = programPath() + " set " + file() +
                      " Identification.ToolkitVersion=2.0.0.0 >/dev/null; sed -i s/FFmpeg/Edited/ \"$file\"";
  const Result result = edited(editor("busy", script, ":"));
  ASSERT_EQ(kept().size(), 2u) << result.err;
  EXPECT_THAT(result.err,
              HasSubstr("; mxfxml import " + kept()[1] + " --into " + file() + " --in-place merges it all the same\n"));
  EXPECT_EQ(run({"import", kept()[1], "--into", file(), "--in-place"}).exitCode, 0);
  EXPECT_TRUE(isRenamed(file()));
}

TEST_F(EditCommandTest, NamesTheDocumentWithAMistake) {
  const Result result = edited("sed -i '6s/>/</'");
  EXPECT_EQ(result.exitCode, 1);
  ASSERT_EQ(kept().size(), 2u) << result.err;
  EXPECT_THAT(result.err, HasSubstr("mxfxml: " + kept()[1] + ": not well-formed XML: line "));
}

TEST_F(EditCommandTest, WritesNothingAfterASignalWhileTheEditorRuns) {
  for (const char* signal : {"TERM", "HUP"}) {
    const Result result = edited(std::string("kill -") + signal + " $PPID; " + kRename);
    EXPECT_EQ(result.exitCode, 1) << signal;
    EXPECT_THAT(result.err, HasSubstr("interrupted; nothing is written")) << signal;
    EXPECT_TRUE(isUntouched()) << signal;
  }
  EXPECT_EQ(kept().size(), 4u);
}

TEST_F(EditCommandTest, KeepsOldBytesForUndo) {
  EXPECT_EQ(edited(kRename, {"--yes", "--keep-undo"}).exitCode, 0);
  EXPECT_TRUE(isRenamed(file()));
  EXPECT_EQ(run({"undo", file()}).exitCode, 0);
  EXPECT_TRUE(isUntouched());
}

/// The same on a terminal.
class EditDialogueTest : public EditCommandTest {
 protected:
  PseudoTerminal started(const std::string& editor) const {
    return PseudoTerminal({"edit", file()}, {"VISUAL=" + editor});
  }
  /// Expects that a key at the question whether to write ends the command, and that the document stays.
  void expectEnd(const std::string& key, const std::string& message) const;
};

constexpr const char* kSpoil = "sed -i '39s/25/many/' \"$file\"";
constexpr const char* kMend = "sed -i -e '39s/many/25/' -e s/FFmpeg/Edited/ \"$file\"";
constexpr const char* kSpoilt = "1 thing is wrong with the document";
constexpr const char* kWrite = "Write these changes? [y]es, [e]dit again, [n]o ";
constexpr const char* kAgain = "Edit it again? [e]dit again, [n]o ";

void EditDialogueTest::expectEnd(const std::string& key, const std::string& message) const {
  auto terminal = started(kRename);
  ASSERT_TRUE(terminal.shows(kWrite));
  terminal.type(key);
  const Result result = terminal.finish();
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.out, HasSubstr(message));
  EXPECT_TRUE(isUntouched());
  EXPECT_EQ(kept().size(), 2u);
}

TEST_F(EditDialogueTest, WritesAfterYes) {
  auto terminal = started(kRename);
  ASSERT_TRUE(terminal.shows(kWrite));
  EXPECT_TRUE(isUntouched());
  terminal.type("maybe\n");
  ASSERT_TRUE(terminal.shows(kWrite));
  terminal.type("Yes\n");
  EXPECT_EQ(terminal.finish().exitCode, 0);
  EXPECT_TRUE(isRenamed(file()));
}

TEST_F(EditDialogueTest, WritesNothingAfterNo) {
  auto terminal = started(kRename);
  ASSERT_TRUE(terminal.shows(kWrite));
  terminal.type("n\n");
  const Result result = terminal.finish();
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, HasSubstr("nothing is written"));
  EXPECT_TRUE(isUntouched());
  EXPECT_THAT(kept(), IsEmpty());
}

TEST_F(EditDialogueTest, WritesNothingAfterAnInterrupt) { expectEnd("\x03", "interrupted; nothing is written"); }

TEST_F(EditDialogueTest, KeepsTheDocumentAtTheEndOfTheInput) {
  expectEnd("\x04", "the question has no answer; nothing is written");
}

TEST_F(EditDialogueTest, AsksNothingAboutAFileThatChangedMeanwhile) {
  const auto script = programPath() + " set " + file() +
                      " Identification.ToolkitVersion=2.0.0.0 >/dev/null; sed -i s/FFmpeg/Edited/ \"$file\"";
  const Result result = started(editor("busy", script, ":")).finish();
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.out, AllOf(HasSubstr(" --in-place merges it all the same"), Not(HasSubstr(kAgain))));
  EXPECT_EQ(kept().size(), 2u);
}

TEST_F(EditDialogueTest, OpensTheEditorAgain) {
  auto terminal = started(editor("vim", "sed -i s/FFmpeg/Wrong/ \"$file\"", "sed -i s/Wrong/Edited/ \"$file\""));
  ASSERT_TRUE(terminal.shows(kWrite));
  terminal.type("e\n");
  ASSERT_TRUE(terminal.shows(kWrite));
  terminal.type("y\n");
  EXPECT_EQ(terminal.finish().exitCode, 0);
  EXPECT_TRUE(isRenamed(file()));
}

/// A mistake, and how the editor is called after it.
struct Mistake {
  const char* name;
  const char* editor;
  const char* first;
  const char* later;
  const char* message;
  const char* arguments;
};

class MistakenEditTest : public EditDialogueTest, public testing::WithParamInterface<Mistake> {};

TEST_P(MistakenEditTest, IsOpenedAtItsLineAndMended) {
  const auto& mistake = GetParam();
  auto terminal = started(editor(mistake.editor, mistake.first, mistake.later));
  ASSERT_TRUE(terminal.shows(mistake.message));
  ASSERT_TRUE(terminal.shows(kAgain));
  EXPECT_TRUE(isUntouched());
  terminal.type("e\n");
  ASSERT_TRUE(terminal.shows(kWrite));
  terminal.type("y\n");
  EXPECT_EQ(terminal.finish().exitCode, 0);
  EXPECT_TRUE(isRenamed(file()));
  EXPECT_THAT(kept(), IsEmpty());
  EXPECT_THAT(log().substr(log().find('\n') + 1), MatchesRegex(mistake.arguments));
}

INSTANTIATE_TEST_SUITE_P(
    Edit, MistakenEditTest,
    testing::Values(Mistake{"Markup", "vim", "sed -i '6s/>/</' \"$file\"",
                            "sed -i -e '6s/<0/>0/' -e s/FFmpeg/Edited/ \"$file\"", "not well-formed XML",
                            "\\+6 .*/a\\.xml\n"},
                    Mistake{"Value", "nano", kSpoil, kMend, kSpoilt, "\\+3[89] .*/a\\.xml\n"},
                    Mistake{"ValueInSublime", "subl", kSpoil, kMend, kSpoilt, "--wait .*/a\\.xml:3[89]\n"},
                    Mistake{"ValueInAnUnknownEditor", "ped", kSpoil, kMend, kSpoilt, "/[^ ]*/a\\.xml\n"},
                    Mistake{"Rule", "code", "sed -i '21s/>1</>2</' \"$file\"",
                            "sed -i -e '21s/>2</>1</' -e s/FFmpeg/Edited/ \"$file\"", "the edit would break",
                            "--wait --goto .*/a\\.xml:(21|45)\n"}),
    [](const auto& mistake) { return mistake.param.name; });

TEST_F(EditDialogueTest, OpensJSONAtTheLineOfTheMistake) {
  const auto script = editor("vim", "sed -i '4s/\"version\"/\"versions\"/;3s/\"version\"/\"versions\"/' \"$file\"",
                             "sed -i -e s/versions/version/ -e s/FFmpeg/Edited/ \"$file\"");
  PseudoTerminal terminal({"edit", file(), "--format", "json"}, {"VISUAL=" + script});
  ASSERT_TRUE(terminal.shows("documents have no such member"));
  ASSERT_TRUE(terminal.shows(kAgain));
  terminal.type("e\n");
  ASSERT_TRUE(terminal.shows(kWrite));
  terminal.type("y\n");
  EXPECT_EQ(terminal.finish().exitCode, 0);
  EXPECT_THAT(log().substr(log().find('\n') + 1), MatchesRegex("\\+3 .*/a\\.json\n"));
}

TEST_F(EditDialogueTest, EndsWithTheMistakeWhenTheUserWantsThat) {
  auto terminal = started("sed -i s/EditRate/EdRate/");
  ASSERT_TRUE(terminal.shows(kAgain));
  terminal.type("n\n");
  EXPECT_EQ(terminal.finish().exitCode, 1);
  EXPECT_TRUE(isUntouched());
  EXPECT_EQ(kept().size(), 2u);
}

}  // namespace
}  // namespace Vantor::Tool
