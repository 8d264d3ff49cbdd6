#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "Program.h"
#include "ScopedVariable.h"
#include "ScratchFolder.h"

namespace Vantor::Tool {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::size_t kBody = 3553;  // where the metadata of the sample have ended
constexpr const char* kEdit = "Identification.ApplicationName=Ed";

/// A file that is cut in its essence, or open, without a footer.
class UnfinishedFile : public ScratchFolder {
 public:
  explicit UnfinishedFile(std::size_t size, bool isOpen = false) {
    auto bytes = readFile(sample("gst-audio-ac3.mxf")).substr(0, size);
    if (isOpen) {
      bytes[14] = 1;
      bytes.replace(41, 8, 8, '\0');  // no footer is named
    }
    writeFile(file(), bytes);
  }
  std::string file() const { return path("a.mxf"); }
  std::string name() const { return run({"get", file(), "Identification.ApplicationName"}).out; }
};

TEST(Force, IsOfferedForAFileThatIsCut) {
  const UnfinishedFile cut(5000), open(kBody, true);
  EXPECT_EQ(run({"set", cut.file(), kEdit}).err,
            "mxfxml: " + cut.file() +
                ": at byte offset 4461: the file cannot be followed to its end, so that partitions may be missing; "
                "--force changes such a file in place, without some checks\n");
  const Result result = run({"set", open.file(), kEdit});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, AllOf(HasSubstr("its writer is still at work, or never came to an end; --force changes")));
}

TEST(Force, ChangesItInPlaceAndTellsWhatIsNotChecked) {
  const UnfinishedFile cut(5000);
  const auto before = readFile(cut.file());
  const Result result = run({"set", cut.file(), kEdit, "--force"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, "1 set changed (1 property); written to 1 partition\n");
  const std::string start = "mxfxml: " + cut.file() + ": not checked: ";
  EXPECT_EQ(result.err,
            start + "the file cannot be followed behind byte offset 4461, where further partitions may be\n" + start +
                "the footer partition that the header partition names is not at byte offset 6822\n");
  const auto after = readFile(cut.file());
  EXPECT_EQ(after.size(), before.size());
  EXPECT_EQ(after.substr(kBody), before.substr(kBody));
  EXPECT_EQ(cut.name(), "Ed\n");
  EXPECT_THAT(cut.files(), ElementsAre("a.mxf"));
}

TEST(Force, NeverWritesAnew) {
  const UnfinishedFile cut(5000);
  const auto before = readFile(cut.file());
  const Result result = run({"set", cut.file(), "Identification.ApplicationName=" + std::string(5000, 'x'), "--force"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("only what fits in place can be changed"));
  EXPECT_EQ(readFile(cut.file()), before);
  EXPECT_THAT(cut.files(), ElementsAre("a.mxf"));
  for (const char* command : {"set", "edit"}) {
    const Result copy = run({command, cut.file(), "--force", "-o", cut.path("b.mxf")});
    EXPECT_EQ(copy.exitCode, 2);
    EXPECT_THAT(copy.err, HasSubstr("--force is for a change in place, not for -o"));
  }
}

TEST(Force, IsForDocumentsToo) {
  const UnfinishedFile cut(5000);
  auto xml = run({"export", cut.file()}).out;
  const std::string old = "GStreamer Multimedia Framework";
  writeFile(cut.path("a.xml"), xml.replace(xml.find(old), old.size(), "Ed"));
  const Result refused = run({"import", cut.path("a.xml"), "--into", cut.file(), "--in-place"});
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_THAT(refused.err, HasSubstr("; --force changes such a file in place, without some checks\n"));
  EXPECT_THAT(run({"import", cut.path("a.xml"), "--into", cut.file(), "--dry-run"}).err, HasSubstr("; --force "));
  const Result result = run({"import", cut.path("a.xml"), "--into", cut.file(), "--in-place", "--force"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(cut.name(), "Ed\n");
  const ScopedVariable visual("VISUAL", "sed -i 's/>Ed</>Edna</'");
  EXPECT_EQ(run({"edit", cut.file(), "--yes", "--force"}).exitCode, 0);
  EXPECT_EQ(cut.name(), "Edna\n");
}

TEST(Force, IsForPlansToo) {
  const UnfinishedFile cut(5000);
  writeFile(cut.path("plan.csv"), "file,path,value\na.mxf,Identification.ApplicationName,Ed\n");
  EXPECT_THAT(run({"set", "--plan", cut.path("plan.csv")}).err, HasSubstr("; --force changes such a file in place"));
  EXPECT_EQ(run({"set", "--plan", cut.path("plan.csv"), "--force"}).exitCode, 0);
  EXPECT_EQ(cut.name(), "Ed\n");
}

TEST(Force, DoesNotHelpWhereTheMetadataAreDamaged) {
  const UnfinishedFile cut(3000);
  EXPECT_EQ(run({"set", cut.file(), kEdit, "--force"}).exitCode, 1);
  auto bytes = readFile(sample("gst-audio-ac3.mxf"));
  bytes[41 + 8 + 7] ^= 0x01;  // the count of header metadata
  writeFile(cut.file(), bytes);
  const Result result = run({"set", cut.file(), kEdit, "--force"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("such a file cannot be edited; mxfxml export"));
  EXPECT_EQ(readFile(cut.file()), bytes);
}

TEST(Force, NeedsALookAtTheResult) {
  const UnfinishedFile cut(5000);
  const Result result = run({"set", cut.file(), kEdit, "--force", "--dry-run"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.err, HasSubstr(": not checked: "));
  EXPECT_EQ(cut.name(), "GStreamer Multimedia Framework\n");
}

TEST(Force, ChangesAFileThatIsStillBeingWritten) {
  const UnfinishedFile open(kBody, true);
  writeFile(open.path("recording"), "");
  // A recorder appends as long as there is the other file.
  const Result result = runScript(
      R"((while [ -e "$2" ]; do head -c 5000 /dev/zero >> "$1"; done) &
for i in 1 2 3 4 5; do
  "$0" set "$1" "Identification.ApplicationName=Ed$i" --force || break
  "$0" get "$1" Identification.ApplicationName
  "$0" info "$1" > "$1.info" || break
done
rm "$2"
wait)",
      {open.file(), open.path("recording")});
  EXPECT_THAT(result.out,
              AllOf(HasSubstr("written to 1 partition\nEd1\n"), HasSubstr("written to 1 partition\nEd5\n")));
  EXPECT_THAT(result.err, HasSubstr("a writer that is still at work may write over the edit"));
  const auto bytes = readFile(open.file());
  EXPECT_GT(bytes.size(), kBody + 5000);
  EXPECT_EQ((bytes.size() - kBody) % 5000, 0u);
  EXPECT_EQ(bytes.find_first_not_of('\0', kBody), std::string::npos);
  EXPECT_NE(readFile(open.path("a.mxf.info")), "");
}

}  // namespace
}  // namespace Vantor::Tool
