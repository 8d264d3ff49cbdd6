#include <gmock/gmock.h>

#include <cstdlib>
#include <sstream>

#include "Program.h"
#include "PseudoTerminal.h"
#include "ScratchFolder.h"
#include "tests/Installed.h"

/// What shells offer behind a begun command line.
namespace Vantor::Tool {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using testing::StartsWith;

using Words = std::vector<std::string>;

Words linesOf(const std::string& text) {
  std::istringstream stream(text);
  Words lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

Words completions(Words words) {
  words.insert(words.begin(), "__complete");
  const Result result = run(words);
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "");
  return linesOf(result.out);
}

TEST(Completion, NamesCommandsAndOptions) {
  EXPECT_THAT(completions({""}), IsSupersetOf({"export", "import", "info", "set", "dictionary"}));
  EXPECT_THAT(completions({"ex"}), ElementsAre("export"));
  EXPECT_THAT(completions({"--v"}), ElementsAre("--version"));
  EXPECT_THAT(completions({"export", "--fl"}), ElementsAre("--flat"));
  EXPECT_THAT(completions({"export", "--nosuch"}), IsEmpty());
}

TEST(Completion, LeavesFilesToTheShell) {
  EXPECT_THAT(completions({"export", ""}), IsEmpty());
  EXPECT_THAT(completions({"export", "-o", ""}), IsEmpty());
  EXPECT_THAT(completions({"export", sample("op1a.mxf"), "x"}), IsEmpty());
}

TEST(Completion, NamesTheValuesOfOptions) {
  EXPECT_THAT(completions({"export", "--encoding", ""}), ElementsAre("utf-16", "utf-8"));
  EXPECT_THAT(completions({"export", "--encoding=utf-1"}), ElementsAre("--encoding=utf-16"));
  EXPECT_THAT(completions({"export", "--partition", "f"}), ElementsAre("footer"));
  EXPECT_THAT(completions({"check", "--ignore", "index-r"}), ElementsAre("index-rate"));
}

TEST(Completion, NamesTheSetsOfTheFile) {
  const auto sets = completions({"set", sample("op1a.mxf"), ""});
  EXPECT_THAT(sets, IsSupersetOf({"Preface.", "MPEGVideoDescriptor.", "Timecode[*].", "Timecode[2]."}));
  EXPECT_THAT(sets, Not(Contains("RGBADescriptor.")));
  EXPECT_THAT(completions({"set", sample("op1a.mxf"), "MaterialPackage/Timecode[1"}),
              Contains("MaterialPackage/Timecode[1]."));
  EXPECT_THAT(completions({"export", sample("op1a.mxf"), "--start", "Pre"}), ElementsAre("Preface"));
}

TEST(Completion, NamesThePropertiesToGet) {
  EXPECT_THAT(completions({"get", sample("op1a.mxf"), "Preface.FormatV"}), ElementsAre("Preface.FormatVersion"));
  EXPECT_THAT(completions({"get", "-p", "Identification.Com"}), ElementsAre("Identification.CompanyName"));
  EXPECT_THAT(completions({"get", sample("op1a.mxf"), "--wi"}), ElementsAre("--with-names"));
}

TEST(Completion, NamesAllSetsWithoutAFileThatCanBeRead) {
  EXPECT_THAT(completions({"set", "nosuch.mxf", "RGBA"}), ElementsAre("RGBADescriptor.", "RGBAEssenceDescriptor."));
  EXPECT_THAT(completions({"set", sample("adm.dictionary"), "RGBA"}),
              ElementsAre("RGBADescriptor.", "RGBAEssenceDescriptor."));
}

TEST(Completion, NamesPropertiesByBothNames) {
  EXPECT_THAT(completions({"set", "a.mxf", "Identification.Com"}), ElementsAre("Identification.CompanyName="));
  EXPECT_THAT(completions({"set", "a.mxf", "Identification.ApplicationS"}),
              ElementsAre("Identification.ApplicationSupplierName="));
  EXPECT_THAT(completions({"set", "a.mxf", "--remove", "Timecode[Start=1].Start"}),
              ElementsAre("Timecode[Start=1].StartTimecode"));
}

TEST(Completion, NamesTheValuesOfEnumerationsAndLabels) {
  EXPECT_THAT(completions({"set", "a.mxf", "CDCIDescriptor.FrameLayout=F"}),
              ElementsAre("CDCIDescriptor.FrameLayout=FullFrame"));
  const auto labels = completions({"set", "a.mxf", "CDCIDescriptor.ColorPrimaries="});
  EXPECT_THAT(labels, Contains("CDCIDescriptor.ColorPrimaries=ColorPrimaries_ITU709"));
  EXPECT_THAT(labels, Each(StartsWith("CDCIDescriptor.ColorPrimaries=")));
}

TEST(Completion, NamesTheValuesOfBooleans) {
  EXPECT_THAT(completions({"set", "a.mxf", "Timecode[*].DropFrame="}),
              ElementsAre("Timecode[*].DropFrame=false", "Timecode[*].DropFrame=true"));
}

TEST(Completion, NamesDefinitions) {
  EXPECT_THAT(completions({"dictionary", "AspectR"}), Contains("AspectRatio"));
  EXPECT_THAT(completions({"dictionary", "TransferCharacteristic_ITU7"}), ElementsAre("TransferCharacteristic_ITU709"));
}

/// What a shell makes of the script with the program as "mxfxml" in its path.
std::string inShell(const std::string& shell, const std::string& commands) {
  const ScratchFolder folder;
  std::filesystem::create_symlink(programPath(), folder.path("mxfxml"));
  writeFile(folder.path("commands"), commands);
  const std::string command = "PATH=" + folder.path().string() + ":$PATH " + shell + " " + folder.path("commands") +
                              " >" + folder.path("out") + " 2>&1";
  EXPECT_EQ(std::system(command.c_str()), 0) << command;
  return readFile(folder.path("out"));
}

/// @param words    as bash divides the line, at its word breaks too. @param options  of the shell.
Words inBash(const std::string& line, const std::string& words, const std::string& options = "") {
  return linesOf(inShell("bash", "source " VANTOR_COMPLETION_DIR "/mxfxml.bash\n" + options + "\nCOMP_LINE=\"" + line +
                                     "\"\nCOMP_POINT=${#COMP_LINE}\nCOMP_WORDS=(" + words +
                                     ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_mxfxml\n"
                                     "printf '%s\\n' \"${COMPREPLY[@]}\"\n"));
}

TEST(Completion, ReplacesInBashWhatStandsBehindItsWordBreaks) {
  EXPECT_THAT(inBash("mxfxml exp", "mxfxml exp"), ElementsAre("export"));
  EXPECT_THAT(inBash("mxfxml export --encoding=utf-1", "mxfxml export --encoding = utf-1"), ElementsAre("utf-16"));
  EXPECT_THAT(inBash("mxfxml set a.mxf CDCIDescriptor.FrameLayout=", "mxfxml set a.mxf CDCIDescriptor.FrameLayout ="),
              Contains("FullFrame"));
  EXPECT_THAT(inBash("mxfxml set a.mxf Identification.Comp", "mxfxml set a.mxf Identification.Comp"),
              ElementsAre("Identification.CompanyName="));
}

TEST(Completion, TakesInBashAFileNameWithABlankForOneWord) {
  const ScratchFolder folder;
  std::filesystem::copy_file(sample("op1a.mxf"), folder.path("two words.mxf"));
  EXPECT_THAT(inBash("mxfxml set two\\\\ words.mxf Timecode", "mxfxml set 'two\\ words.mxf' Timecode",
                     "cd '" + folder.path().string() + "'"),
              Contains("Timecode[1]."));
}

TEST(Completion, GoesOnInBashWithTheWordThatAnEscapedBlankIsPartOf) {
  const std::string program = "mxfxml() { printf '[%s]\\n' \"$@\"; }";
  EXPECT_THAT(inBash("mxfxml set two\\\\ ", "mxfxml set 'two\\ '", program),
              ElementsAre("[__complete]", "[set]", "[two ]"));
  EXPECT_THAT(inBash("mxfxml set two\\\\\\\\ ", "mxfxml set 'two\\\\' ''", program),
              ElementsAre("[__complete]", "[set]", "[two\\]", "[]"));
  EXPECT_THAT(inBash("mxfxml set two ", "mxfxml set two ''", program),
              ElementsAre("[__complete]", "[set]", "[two]", "[]"));
}

/// Sets in brackets are no patterns of file names.
TEST(Completion, KeepsBracketsInBashWhateverFilesThereAre) {
  const std::string files = "cd $(mktemp -d); touch Timecode1.StartTimecode=; trap 'rm -r $PWD' EXIT; ";
  for (const std::string options : {"", "shopt -s nullglob", "shopt -s failglob"}) {
    for (const std::string quote : {"", "'", "\\\""}) {
      const auto line = "mxfxml set a.mxf " + quote + "Timecode[1].StartT";
      const auto word = quote.empty()  ? "'Timecode[1].StartT'"
                        : quote == "'" ? "\"'Timecode[1].StartT\""
                                       : "'\"Timecode[1].StartT'";
      EXPECT_THAT(inBash(line, std::string("mxfxml set a.mxf ") + word, files + options),
                  ElementsAre("Timecode[1].StartTimecode="))
          << options << line;
    }
  }
}

bool hasZsh() { return isInstalled("zsh", std::system("command -v zsh >/dev/null 2>&1") == 0); }

/// What zsh makes of the line of a terminal when TAB is pressed behind it.
std::string completedInZsh(const std::string& line) {
  const ScratchFolder folder;
  std::filesystem::create_symlink(programPath(), folder.path("mxfxml"));
  writeFile(folder.path(".zshrc"),
            "PATH=" + folder.path().string() +
                ":$PATH\nfpath=(" VANTOR_COMPLETION_DIR
                " $fpath)\nautoload -U compinit\ncompinit -u -D\nunsetopt beep\nPS1='ready> '\n"
                "show() { zle -I; print -r -- \"[$BUFFER]\"; exit }\nzle -N show\nbindkey '^X' show\n");
  PseudoTerminal terminal("/bin/sh", {"-c", "exec zsh -d -i"},
                          {"ZDOTDIR=" + folder.path().string(), "TERM=dumb", "COLUMNS=200"});
  EXPECT_TRUE(terminal.shows("ready> "));
  terminal.type(line + "\t\x18");
  const auto shown = terminal.finish().out;
  const auto at = shown.rfind("\n[");
  return at == std::string::npos ? shown : shown.substr(at + 2, shown.find("]\n", at) - at - 2);
}

TEST(Completion, IsLoadedByZsh) {
  if (!hasZsh()) GTEST_SKIP() << "zsh is not installed";
  EXPECT_EQ(completedInZsh("mxfxml exp"), "mxfxml export ");
  EXPECT_EQ(completedInZsh("mxfxml set a.mxf Identification.Comp"), "mxfxml set a.mxf Identification.CompanyName=");
}

TEST(Completion, GoesOnInZshInsideQuotes) {
  if (!hasZsh()) GTEST_SKIP() << "zsh is not installed";
  for (const std::string quote : {"'", "\""}) {
    EXPECT_EQ(completedInZsh("mxfxml set a.mxf " + quote + "Timecode[1].StartT"),
              "mxfxml set a.mxf " + quote + "Timecode[1].StartTimecode=");
  }
  EXPECT_EQ(completedInZsh("mxfxml set 'a b.mxf' Identification.Comp"),
            "mxfxml set 'a b.mxf' Identification.CompanyName=");
  EXPECT_EQ(completedInZsh("mxfxml set a.mxf Timecode\\[1\\].StartT"),
            "mxfxml set a.mxf Timecode\\[1\\].StartTimecode=");
}

TEST(Completion, AsksInZshForWholeWords) {
  if (!hasZsh()) GTEST_SKIP() << "zsh is not installed";
  const std::string lines =
      "compdef() { }\n_files() { print files }\ncompadd() { print -r -- \"$@\" }\n"
      "words=(mxfxml set a.mxf Identification.Comp) CURRENT=4\nsource " VANTOR_COMPLETION_DIR
      "/_mxfxml\n"
      "words=(mxfxml exp) CURRENT=2\n_mxfxml\nwords=(mxfxml export '') CURRENT=3\n_mxfxml\n";
  EXPECT_THAT(linesOf(inShell("zsh -f", lines)),
              ElementsAre("-S  -- Identification.CompanyName=", "-- export", "files"));
}

}  // namespace
}  // namespace Vantor::Tool
