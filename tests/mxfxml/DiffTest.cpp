#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "Edit.h"

namespace Vantor::Tool {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kSample = "gst-audio-ac3.mxf";
constexpr const char* kEqual = "sets compared 19; properties compared 115\n";

TEST(Diff, FindsNothingBetweenAFileAndItsExports) {
  const ScratchFolder folder;
  for (const auto& options : std::vector<std::vector<std::string>>{
           {}, {"--flat"}, {"--vocabulary", "st434-2014"}, {"--encoding", "utf-16"}}) {
    std::vector<std::string> arguments = {"export", sample(kSample), "-o", folder.path("a.xml")};
    arguments.insert(arguments.end(), options.begin(), options.end());
    ASSERT_EQ(run(arguments).exitCode, 0);
    for (const auto& [left, right] :
         {std::pair(sample(kSample), folder.path("a.xml")), std::pair(folder.path("a.xml"), sample(kSample)),
          std::pair(folder.path("a.xml"), folder.path("a.xml"))}) {
      const Result result = run({"diff", left, right});
      EXPECT_EQ(result.exitCode, 0) << result.err;
      EXPECT_THAT(result.out, EndsWith(kEqual));
    }
  }
}

TEST(Diff, PrintsWhatDiffersAndFails) {
  const ScratchFolder folder;
  std::string xml = run({"export", sample(kSample)}).out;
  const std::string track = "<rp210:TrackID>1<";
  writeFile(folder.path("a.xml"), xml.replace(xml.find(track), track.size(), "<rp210:TrackID>7<"));
  const Result result = run({"diff", sample(kSample), folder.path("a.xml")});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(result.out, AllOf(StartsWith("value: TimelineTrack "), HasSubstr(": TrackID: 1 -> 7\n"),
                                EndsWith("sets compared 19, different 1; properties compared 115, different 1\n")));
}

TEST(Diff, PrintsOtherInstanceUIDsUnlessToldNotTo) {
  const ScratchFolder folder;
  ASSERT_EQ(run({"export", sample("op1a.mxf"), "-o", folder.path("a.xml")}).exitCode, 0);
  ASSERT_EQ(run({"import", "--exact", folder.path("a.xml"), "-o", folder.path("b.mxf")}).exitCode, 0);
  const Result result = run({"diff", sample("op1a.mxf"), folder.path("b.mxf")});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.out, HasSubstr("identifier: Preface: AD.AB.44.24.2F.25.4D.C7.92.FF.00.0B.00.00.00.00 -> "));
  EXPECT_EQ(run({"diff", "--ignore-ids", sample("op1a.mxf"), folder.path("b.mxf")}).exitCode, 0);
}

/// What a flat export of the sample has for the tracks of its material package.
const std::string kFirstTrack =
    "<s377m:TimelineTrack_REF types:TargetInstance=\"79.4E.DE.7C.04.C7.43.42.80.EE.FA.59.53.B7.25.B3\"/>";
const std::string kSecondTrack =
    "<s377m:TimelineTrack_REF types:TargetInstance=\"DA.87.E0.C7.73.4F.44.E9.B7.42.6D.EE.B5.EF.08.2F\"/>";

/// Puts an edit of references back and looks what is told of it.
void expectOneProperty(const Edit& edit, const std::string& property, const std::vector<std::string>& rules = {}) {
  ASSERT_EQ(edit.intoCopy(ignoring(rules)).exitCode, 0);
  const Result result = run({"diff", edit.original(), edit.copy()});
  EXPECT_THAT(result.out, AllOf(StartsWith("reference: MaterialPackage "), HasSubstr(": " + property),
                                EndsWith("sets compared 19, different 1; properties compared 115, different 1\n")));
  EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 2) << result.out;
  EXPECT_NE(run({"diff", "--ignore-ids", edit.original(), edit.copy()}).out, result.out);
}

TEST(Diff, ShowsAReferenceThatWasTakenOutAsOneProperty) {
  const Edit edit(sample(kSample), {"--flat"});
  edit.replace(kFirstTrack, "");
  expectOneProperty(edit, "PackageTracks (Tracks): [79.4E.DE.7C.", {"unreached-set"});
}

TEST(Diff, ShowsReferencesThatWereSwappedAsOneProperty) {
  const Edit edit(sample(kSample), {"--flat"});
  edit.replace(kFirstTrack, "@");
  edit.replace(kSecondTrack, kFirstTrack);
  edit.replace("@", kSecondTrack);
  expectOneProperty(edit, "PackageTracks[0] (Tracks): 79.4E.DE.7C.");
}

TEST(Diff, TakesThePartitionOfWhicheverFileIsNoDocument) {
  const ScratchFolder folder;
  ASSERT_EQ(run({"export", sample(kSample), "--partition", "footer", "-o", folder.path("a.xml")}).exitCode, 0);
  EXPECT_EQ(run({"diff", sample(kSample), folder.path("a.xml"), "--partition", "footer"}).exitCode, 0);
  EXPECT_EQ(run({"diff", folder.path("a.xml"), sample(kSample), "--partition", "2"}).exitCode, 0);
  EXPECT_EQ(run({"diff", folder.path("a.xml"), sample(kSample), "--partition", "9"}).exitCode, 2);
  const Result result = run({"diff", folder.path("a.xml"), folder.path("a.xml"), "--partition", "footer"});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.err, "mxfxml: --partition is for MXF files, and neither file is one; see mxfxml diff --help\n");
}

TEST(Diff, FailsWhereAFileCannotBeRead) {
  EXPECT_EQ(run({"diff", sample(kSample), "/nonexistent"}).exitCode, 2);
  EXPECT_EQ(run({"diff", sample(kSample)}).exitCode, 2);
}

TEST(Diff, NamesTheFileThatCannotBeReadAndNoOther) {
  const ScratchFolder folder;
  writeFile(folder.path("a.xml"), "<a>");
  for (const auto& [left, right] :
       {std::pair(sample(kSample), folder.path("a.xml")), std::pair(folder.path("a.xml"), sample(kSample))}) {
    const Result result = run({"diff", left, right});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, AllOf(StartsWith("mxfxml: " + folder.path("a.xml") + ": not well-formed XML: line 1"),
                                  Not(HasSubstr(kSample))));
  }
  EXPECT_EQ(run({"diff", sample(kSample), "/nonexistent"}).err,
            "mxfxml: cannot open '/nonexistent': No such file or directory\n");
}

TEST(Diff, TakesWhatADocumentCannotMeanForAWarningOrAnError) {
  const ScratchFolder folder;
  std::string xml = run({"export", sample(kSample)}).out;
  const std::string track = "<rp210:TrackID>1</rp210:TrackID>";
  writeFile(folder.path("a.xml"), xml.replace(xml.find(track), 0, "<rp210:TrackID>one</rp210:TrackID>"));
  const std::string start = "mxfxml: " + folder.path("a.xml") + ": ";
  const Result warned = run({"diff", sample(kSample), folder.path("a.xml")});
  EXPECT_THAT(warned.err, StartsWith(start + "warning: line 22: "));
  EXPECT_THAT(warned.out, HasSubstr("sets compared "));
  for (const auto& [left, right] :
       {std::pair(sample(kSample), folder.path("a.xml")), std::pair(folder.path("a.xml"), sample(kSample))}) {
    const Result result = run({"diff", "--strict", left, right});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, AllOf(StartsWith(start + "line 22: "), HasSubstr("\n" + start),
                                  EndsWith(" wrong with the document\n"), Not(HasSubstr(kSample))));
  }
}

}  // namespace
}  // namespace Vantor::Tool
