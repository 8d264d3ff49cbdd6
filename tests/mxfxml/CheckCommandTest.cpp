#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Program.h"
#include "ScratchFolder.h"

namespace Vantor::Tool {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const std::string kSound = sample("op1a.mxf");
const std::string kWithNote = sample("bmx-op1a-timedtext.mxf");
const std::string kWithWarnings = sample("ffmpeg-mpeg2-pipe-unfinished.mxf");

TEST(CheckCommand, EndsWithZeroWhereNothingIsFound) {
  const Result result = run({"check", kSound});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, kSound + ": nothing found\n");
  EXPECT_EQ(result.err, "");
}

TEST(CheckCommand, EndsWithZeroAfterNotes) {
  const Result result = run({"check", kWithNote});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out,
            "note: often-missing-property: partition 0: DCTimedTextDescriptor "
            "D3.E9.CD.E6.1C.B4.4D.6A.88.63.12.93.8E.BE.A9.75: ResourceID: a required property is missing that many "
            "writers leave out\n" +
                kWithNote + ": 1 note\n");
}

TEST(CheckCommand, EndsWithOneAfterWarnings) {
  const Result result = run({"check", kWithWarnings});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.out, StartsWith("warning: unfinished-file: partition 0: no closed and complete partition has "
                                     "header metadata\n"));
  EXPECT_THAT(result.out, EndsWith(kWithWarnings + ": 2 warnings\n"));
  EXPECT_EQ(result.err, "");
}

TEST(CheckCommand, LeavesOutIgnoredRules) {
  const Result result = run({"check", kWithWarnings, "--ignore", "unfinished-file", "--ignore", "unknown-footer"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, kWithWarnings + ": nothing found\n");
}

TEST(CheckCommand, NamesTheNearestRuleForAnUnknownOne) {
  const Result result = run({"check", kSound, "--ignore", "unfinshed-file"});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(
      result.err,
      "mxfxml: --ignore: 'unfinshed-file' is no rule (did you mean 'unfinished-file'?); see mxfxml check --help\n");
}

TEST(CheckCommand, ChecksTheOtherFilesWhereOneCannotBeRead) {
  const ScratchFolder folder;
  const std::string broken = folder.path("broken.mxf");
  writeFile(broken, "no MXF");
  const Result result = run({"check", broken, kWithWarnings, kSound});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_THAT(result.err, StartsWith("mxfxml: " + broken + ": "));
  EXPECT_THAT(result.out, HasSubstr(kWithWarnings + ": warning: unfinished-file: "));
  EXPECT_THAT(result.out, EndsWith(kWithWarnings + ": 2 warnings\n" + kSound + ": nothing found\n"));
}

TEST(CheckCommand, EndsWithTheHighestCodeOfSeveralFiles) {
  EXPECT_EQ(run({"check", kWithWarnings, kSound}).exitCode, 1);
  EXPECT_EQ(run({"check", kSound, kSound}).exitCode, 0);
}

TEST(CheckCommand, PrintsTheRules) {
  const Result result = run({"check", "--rules"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, AllOf(HasSubstr("  dangling-reference "), HasSubstr(" error "), HasSubstr(" ST 377-1, ")));
}

TEST(CheckCommand, TakesEitherFilesOrTheRequestForRules) {
  EXPECT_EQ(run({"check"}).exitCode, 2);
  EXPECT_EQ(run({"check", "--rules", kSound}).exitCode, 2);
}

TEST(CheckCommand, KnowsLabelsOfDictionaryFiles) {
  const ScratchFolder folder;
  const std::string changed = folder.path("changed.mxf"), labels = folder.path("acme.dictionary");
  writeFile(changed, readFile(kSound));
  const std::string label = "060e2b34.04010101.0f0e0d0c.01000000";
  const Result edit = run({"set", changed,
                           "MPEGVideoDescriptor.PictureCompression=06.0E.2B.34.04.01.01.01.0F.0E.0D.0C."
                           "01.00.00.00"});
  ASSERT_EQ(edit.exitCode, 0) << edit.err;
  writeFile(labels, "dictionary 1\nlabel " + label + "  AcmeCoding  Acme's coding\n");
  EXPECT_THAT(run({"check", changed}).out, HasSubstr("note: unknown-label: "));
  EXPECT_EQ(run({"check", changed, "--dictionary", labels}).out, changed + ": nothing found\n");
}

}  // namespace
}  // namespace Vantor::Tool
