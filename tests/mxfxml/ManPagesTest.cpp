#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "Program.h"
#include "ScratchFolder.h"
#include "tests/Installed.h"

/// Man pages, which the build makes of the help texts where help2man is installed.
namespace Vantor::Tool {
namespace {

using testing::HasSubstr;

/// The names that the program itself lists.
std::vector<std::string> pageNames() {
  std::vector<std::string> names = {"mxfxml"};
  std::istringstream commands(run({"__complete", ""}).out);
  for (std::string command; std::getline(commands, command);) names.push_back("mxfxml-" + command);
  return names;
}

/// The options of a help text: each word behind the blanks at the start of a line that begins with a dash.
std::vector<std::string> optionsIn(const std::string& help) {
  std::vector<std::string> options;
  std::istringstream lines(help);
  for (std::string line; std::getline(lines, line);) {
    const auto start = line.find_first_not_of(' ');
    if (start != 2 || line[start] != '-') continue;
    options.push_back(line.substr(start, line.find_first_of(" ,", start) - start));
    const auto other = line.find(",--");
    if (other != std::string::npos) options.push_back(line.substr(other + 1, line.find(' ', other) - other - 1));
  }
  return options;
}

std::string withoutBackslashes(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), '\\'), text.end());
  return text;
}

class ManPagesTest : public testing::Test {
 protected:
  void SetUp() override {
#ifndef VANTOR_MAN_DIR
    isInstalled("help2man", false);
    GTEST_SKIP() << "the build makes no man pages without help2man";
#endif
  }
#ifdef VANTOR_MAN_DIR
  static std::string pathOf(const std::string& name) { return std::string(VANTOR_MAN_DIR) + "/" + name + ".1"; }
#else
  static std::string pathOf(const std::string& name) { return name; }
#endif
};

TEST_F(ManPagesTest, HaveEveryOptionOfTheHelp) {
  for (const auto& name : pageNames()) {
    const auto page = withoutBackslashes(readFile(pathOf(name)));
    const auto help = name == "mxfxml" ? run({"--help"}).out : run({name.substr(7), "--help"}).out;
    EXPECT_FALSE(optionsIn(help).empty()) << name;
    for (const auto& option : optionsIn(help)) EXPECT_THAT(page, HasSubstr(option)) << name;
    EXPECT_THAT(page, HasSubstr(".SH NAME\n" + name + " - ")) << name;
    EXPECT_THAT(page, HasSubstr(".SH \"SEE ALSO\"\n.BR mxfxml")) << name;
  }
}

/// The first lines of tagged entries, without fonts.
std::vector<std::string> tagsIn(const std::string& page) {
  std::vector<std::string> tags;
  std::istringstream lines(page);
  bool isTag = false;
  for (std::string line; std::getline(lines, line); isTag = line == ".TP") {
    if (!isTag) continue;
    for (const char* font : {"\\fB", "\\fI", "\\fR"}) {
      for (auto at = line.find(font); at != std::string::npos; at = line.find(font)) line.erase(at, 3);
    }
    tags.push_back(withoutBackslashes(line));
  }
  return tags;
}

TEST_F(ManPagesTest, HaveAnEntryForEachOptionAndArgument) {
  for (const auto& name : pageNames()) {
    const auto tags = tagsIn(readFile(pathOf(name)));
    const auto help = name == "mxfxml" ? run({"--help"}).out : run({name.substr(7), "--help"}).out;
    for (const auto& option : optionsIn(help)) {
      const auto isOf = [&](const std::string& tag) {
        const auto at = tag.find(option);
        return at != std::string::npos && tag.find("  ") == std::string::npos && at + option.size() <= tag.size();
      };
      EXPECT_TRUE(std::any_of(tags.begin(), tags.end(), isOf)) << name << " " << option;
    }
    for (const auto& tag : tags) EXPECT_LE(tag.size(), 40u) << name << ": " << tag;
  }
}

bool hasGroff() { return isInstalled("groff", std::system("command -v groff >/dev/null 2>&1") == 0); }

/// As they look on a terminal, without hyphens.
std::string shown(const std::string& page) {
  return runScript("{ echo .nh; cat \"$1\"; } | groff -man -Tascii -P-cbou -rLL=200n", {page}).out;
}

TEST_F(ManPagesTest, HaveALineForEachExample) {
  if (!hasGroff()) GTEST_SKIP() << "groff is not installed";
  for (const auto& name : pageNames()) {
    if (name == "mxfxml") continue;
    const auto page = shown(pathOf(name)), help = run({name.substr(7), "--help"}).out;
    std::istringstream lines(help.substr(help.find("\nExamples:\n")));
    std::size_t examples = 0;
    for (std::string line; std::getline(lines, line);) {
      if (line.compare(0, 9, "  mxfxml ") != 0) continue;
      EXPECT_THAT(page, HasSubstr(" " + line.substr(2) + "\n")) << name;
      ++examples;
    }
    EXPECT_NE(examples, 0u) << name;
  }
}

TEST_F(ManPagesTest, AreSetWithoutAWarning) {
  if (!hasGroff()) GTEST_SKIP() << "groff is not installed";
  for (const auto& name : pageNames()) {
    const Result result = runScript("groff -ww -man -Tutf8 -z \"$1\"", {pathOf(name)});
    EXPECT_EQ(result.exitCode, 0) << name;
    EXPECT_EQ(result.err, "") << name;
  }
}

}  // namespace
}  // namespace Vantor::Tool
