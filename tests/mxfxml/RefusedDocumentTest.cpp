#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Edit.h"
#include "Refusal.h"

/// Documents that are refused.
namespace Vantor::Tool {
namespace {

const Refusal kRefusedDocuments[] = {
    {"a mistyped element",
     kIntoItself,
     1,
     {"{doc}: line 34: Timecode 74.D2.7B.52.F8.46.48.4F.83.9C.02.4A.10.9C.37.4D: the set has no property DropFram in "
      "the namespace urn:SMPTE:RP210; the element is not read",
      "{doc}: 1 thing is wrong with the document; nothing is written; --keep-going writes the rest"},
     kGst,
     edited("<rp210:DropFrame>0</rp210:DropFrame>", "<rp210:DropFram>0</rp210:DropFram>")},
    {"a value of the wrong kind",
     kIntoCopy,
     1,
     {"{doc}: line 22: TimelineTrack 79.4E.DE.7C.04.C7.43.42.80.EE.FA.59.53.B7.25.B3: TrackID: 'one' is no whole "
      "number from 0 to 4294967295",
      "{doc}: 1 thing is wrong with the document; nothing is written; --keep-going writes the rest"},
     kGst,
     edited("<rp210:TrackID>1<", "<rp210:TrackID>one<")},
    {"a document that lacks the identifications",
     kIntoItself,
     1,
     {"{file}: warning: required-property: partitions 0, 2: Preface 69.78.A3.6D.93.7F.4D.E1.AB.19.DE.B5.C5.F5.5E.2C: "
      "IdentificationList (Identifications): a required property is missing",
      "{file}: the edit would break 1 rule that the file keeps; nothing is written; --ignore RULE permits it"},
     kGst,
     without("rp210:IdentificationList")},
    {"a document with two tracks of one number",
     kIntoCopy,
     1,
     {"{file}: error: track-id: partitions 0, 2: TimelineTrack DA.87.E0.C7.73.4F.44.E9.B7.42.6D.EE.B5.EF.08.2F: "
      "TrackID: TrackID 2 occurs twice in the MaterialPackage",
      "{file}: the edit would break 1 rule that the file keeps; nothing is written; --ignore RULE permits it"},
     kGst,
     edited("<rp210:TrackID>1<", "<rp210:TrackID>2<")},
    {"a document with a rate of nothing",
     kIntoItself,
     1,
     {"{file}: error: edit-rate: partitions 0, 2: TimelineTrack 79.4E.DE.7C.04.C7.43.42.80.EE.FA.59.53.B7.25.B3: "
      "EditRate: 0/256 is no rate: both numbers have to be above 0",
      "{file}: the edit would break 1 rule that the file keeps; nothing is written; --ignore RULE permits it"},
     kGst,
     edited("<types:Numerator>48000<", "<types:Numerator>0<")},
    {"a new name that no set has",
     kIntoItself,
     1,
     {"{doc}: cannot be put into {file}: line 70: no set of the document is named 'new:track'"},
     kGst,
     edited("</rp210:PackageTracks>",
            "<s377m:StaticTrack_REF types:TargetInstance=\"new:track\"/></rp210:PackageTracks>")},
    {"a document of another file",
     kIntoCopy,
     1,
     {"{doc}: cannot be put into {file}: the document is of another file: it has the package "
      "06.0A.2B.34.01.01.01.05.01.01.0D.00.13.56.F0.6D.52.94.71.34.F9.56.F0.6D.00.52.94.71.34.F9.56.00, the file has "
      "the package 06.0A.2B.34.01.01.01.05.01.01.0D.22.13.9B.BD.B8.45.EE.F7.3A.7A.98.45.6A.B9.3F.97.6A.95.3F.0F.F9; "
      "--merge-anyway merges it all the same"},
     kGst,
     exportOf("op1a.mxf")},
    {"a document that is no XML",
     kIntoItself,
     1,
     {"{doc}: the file begins with 'Hello'; metadata in XML begin with '<', in JSON with '{'"},
     kGst,
     written("Hello\n")},
    {"a document that is not there", kIntoItself, 1, {"cannot read {doc}: No such file or directory"}},
    {"a document of a state that is gone",
     with(kIntoItself, {"--expect-unchanged"}),
     1,
     {"{doc}: cannot be put into {file}: the file has changed since the document was exported"},
     kGst,
     both(edited("Linux", "Plan 9"), after({"set", "{file}", "Timecode[1].StartTimecode=9"}))},
    {"a document without a target",
     {"import", "{doc}"},
     2,
     {"-o is required, or --into with --in-place or --dry-run; see mxfxml import --help"},
     kGst,
     exportOf("gst-audio-ac3.mxf")},
    {"an edit in place without a file",
     {"import", "{doc}", "--in-place"},
     2,
     {"--in-place requires --into; see mxfxml import --help"},
     kGst,
     exportOf("gst-audio-ac3.mxf")},
    {"a rule without a file",
     {"import", "{doc}", "-o", "{out}", "--ignore", "unreached-set"},
     2,
     {"--ignore requires --into; see mxfxml import --help"},
     kGst,
     exportOf("gst-audio-ac3.mxf")},
    {"a document in place without writing",
     with(kIntoItself, {"--dry-run"}),
     2,
     {"--dry-run writes nothing, neither with -o nor --in-place; see mxfxml import --help"},
     kGst,
     exportOf("gst-audio-ac3.mxf")},
    {"old bytes of a copy with a document",
     with(kIntoCopy, {"--keep-undo"}),
     2,
     {"--keep-undo is for a change in place, not for -o; see mxfxml import --help"},
     kGst,
     exportOf("gst-audio-ac3.mxf")},
    {"a document for a read only file",
     kIntoItself,
     1,
     {"cannot change '{file}': it is read-only"},
     kGst,
     both(edited("Linux", "Plan 9"), readOnly())},
};

class RefusedDocument : public testing::TestWithParam<Refusal> {};

TEST_P(RefusedDocument, WritesNothingAndGivesTheReason) { expectRefusal(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Mistakes, RefusedDocument, testing::ValuesIn(kRefusedDocuments), mistakeOf);

/// Writers such as FFmpeg give the sets of every file the same InstanceUIDs.
class DocumentOfFfmpeg : public testing::Test {
 protected:
  void SetUp() override {
    const fs::path folder = fs::path(VANTOR_SHARED_DIR) / "samples";
    other_ = (folder / "ffmpeg-mpeg2-pcm.mxf").string();
    if (!fs::exists(other_)) GTEST_SKIP() << "without the folder of samples";
    fs::copy_file(folder / "ffmpeg-mpeg2-tags.mxf", file_);
    before_ = readFile(file_);
  }
  void exportOther(std::vector<std::string> options) const {
    options.insert(options.begin(), {"export", other_, "-o", document_});
    ASSERT_EQ(run(options).exitCode, 0);
  }
  void expectRefusal(const std::string& reason) const {
    for (const auto& target : {Lines{"--in-place"}, {"-o", folder_.path("b.mxf")}}) {
      const Result result = run(with({"import", document_, "--into", file_}, target));
      EXPECT_EQ(result.exitCode, 1);
      EXPECT_EQ(result.out, "");
      EXPECT_EQ(result.err, "mxfxml: " + document_ + ": cannot be put into " + file_ + ": " + reason +
                                "; --merge-anyway merges it all the same\n");
      EXPECT_TRUE(readFile(file_) == before_);
      EXPECT_THAT(folder_.files(), testing::ElementsAre("a.mxf", "a.xml"));
    }
  }

  const ScratchFolder folder_;
  const std::string file_ = folder_.path("a.mxf"), document_ = folder_.path("a.xml");
  std::string other_, before_;
};

TEST_F(DocumentOfFfmpeg, IsRefusedInAnotherFileWithTheSameInstanceUIDs) {
  const std::string reason =
      "the document is of another file: it has the package "
      "06.0A.2B.34.01.01.01.05.01.01.0D.00.13.56.F0.6D.52.94.71.34.F9.56.F0.6D.00.52.94.71.34.F9.56.00, the file has "
      "the package 06.0A.2B.34.01.01.01.05.01.01.0D.00.13.8B.38.8C.52.94.71.34.2E.8B.38.8C.00.52.94.71.34.2E.8B.00";
  for (const auto& form : {Lines{}, {"--flat"}, {"--exact"}, {"--start", "MaterialPackage"}}) {
    exportOther(form);
    expectRefusal(reason);
  }
  exportOther({});
  writeFile(document_, withoutDescription(readFile(document_)));
  expectRefusal(reason);
}

TEST_F(DocumentOfFfmpeg, OfAPartIsRefusedInAnotherFileWithTheSameInstanceUIDs) {
  exportOther({"--start", "Identification"});
  expectRefusal(
      "the document does not describe this state of the file, and has no package with an identifier of its own, so "
      "that "
      "it may be of another file");
}

}  // namespace
}  // namespace Vantor::Tool
