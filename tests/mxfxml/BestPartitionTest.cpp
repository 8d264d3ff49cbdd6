#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Program.h"
#include "ScratchFolder.h"

namespace Vantor::Tool {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// A file whose header partition has another status, and its footer partition the same or another one.
class StatusFile : public ScratchFolder {
 public:
  StatusFile(char ofHeader, char ofFooter = '\x04') {
    auto bytes = readFile(sample("gst-audio-ac3.mxf"));
    bytes[14] = ofHeader;
    bytes[6822 + 14] = ofFooter;
    writeFile(file(), bytes);
  }
  std::string file() const { return path("a.mxf"); }
};

constexpr char kOpenIncomplete = 1, kClosedIncomplete = 2, kOpenComplete = 3, kClosedComplete = 4;

std::string chosenIn(const StatusFile& file) {
  const Result result = run({"get", "--json", "--partition", "best", file.file(), "Preface.Version"});
  EXPECT_EQ(result.err, "");
  for (const char* name : {"header", "footer"}) {
    if (result.out.find(std::string("\"partition\": \"") + name + "\"") != std::string::npos) return name;
  }
  return "none";
}

TEST(BestPartition, IsTheOneWithTheBestStatusAndTheFooterOfEqualOnes) {
  const char inOrder[] = {kOpenIncomplete, kOpenComplete, kClosedIncomplete, kClosedComplete};
  for (int header = 0; header < 4; ++header) {
    for (int footer = 0; footer < 4; ++footer) {
      EXPECT_EQ(chosenIn({inOrder[header], inOrder[footer]}), footer >= header ? "footer" : "header")
          << header << " " << footer;
    }
  }
}

TEST(BestPartition, IsNamedInDocuments) {
  const StatusFile file(kOpenIncomplete);
  const Result best = run({"export", "--partition", "best", file.file()});
  EXPECT_EQ(best.err, "");
  EXPECT_EQ(best.out, run({"export", "--partition", "footer", file.file()}).out);
  EXPECT_EQ(run({"export", "--json", "--partition", "best", file.file()}).out,
            run({"export", "--json", "--partition", "footer", file.file()}).out);
}

TEST(BestPartition, IsTakenByEveryCommandThatReadsOne) {
  const StatusFile file(kOpenIncomplete);
  const std::vector<std::vector<std::string>> commands = {{"export", file.file()},
                                                          {"verify", file.file()},
                                                          {"info", file.file()},
                                                          {"info", "--sets", file.file()},
                                                          {"get", file.file(), "Preface.Version"},
                                                          {"show", file.file()},
                                                          {"diff", file.file(), sample("gst-audio-ac3.mxf")}};
  for (auto command : commands) {
    command.insert(command.end(), {"--partition", "best"});
    const Result best = run(command);
    command.back() = "footer";
    const Result footer = run(command);
    EXPECT_EQ(best.out, footer.out) << command.front();
    EXPECT_EQ(best.exitCode, footer.exitCode);
    EXPECT_EQ(best.err, "");
  }
}

TEST(BestPartition, IsNotedByEveryCommandThatReadsTheHeader) {
  const StatusFile file(kOpenIncomplete);
  const std::string note =
      "mxfxml: " + file.file() + ": note: the footer partition is in a better state; --partition footer reads it\n";
  for (const auto& command :
       std::vector<std::vector<std::string>>{{"export", file.file()},
                                             {"verify", file.file()},
                                             {"info", "--sets", file.file()},
                                             {"info", "--partitions", file.file()},
                                             {"get", file.file(), "Preface.Version"},
                                             {"show", file.file()},
                                             {"diff", file.file(), sample("gst-audio-ac3.mxf")}}) {
    EXPECT_EQ(run(command).err, note) << command.front();
  }
  EXPECT_EQ(run({"info", file.file()}).err, "");  // which takes it
  const StatusFile sound(kClosedComplete);
  EXPECT_EQ(run({"verify", sound.file()}).err, "");
}

TEST(BestPartition, IsEdited) {
  const StatusFile file(kOpenIncomplete);
  const Result result = run({"set", file.file(), "Identification.ApplicationName=Ed", "--partition", "best", "--ignore",
                             "repeated-metadata"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(run({"get", file.file(), "Identification.ApplicationName", "--partition", "footer"}).out, "Ed\n");
  const Result header = run({"set", file.file(), "Identification.ApplicationName=Edna", "--dry-run"});
  EXPECT_THAT(header.err, HasSubstr("partition 2, which is in a better state, has other metadata than the header "
                                    "partition, and keeps them; --partition 2 edits them\n"));
}

TEST(BestPartition, IsTheHeaderWithoutAnother) {
  const ScratchFolder folder;
  writeFile(folder.path("cut.mxf"), readFile(sample("gst-audio-ac3.mxf")).substr(0, 5000));
  EXPECT_EQ(run({"export", "--partition", "best", folder.path("cut.mxf")}).out,
            run({"export", folder.path("cut.mxf")}).out);
  const Result piped = runScript("cat '" + folder.path("cut.mxf") + "' | \"$0\" export - --partition best");
  EXPECT_EQ(piped.out, run({"export", folder.path("cut.mxf")}).out);
}

}  // namespace
}  // namespace Vantor::Tool
