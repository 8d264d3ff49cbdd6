#include <gmock/gmock.h>

#include "Edit.h"

/// Which of a file's partitions an edited document is for.
namespace Vantor::Tool {
namespace {

using testing::HasSubstr;

constexpr const char* kSample = "gst-audio-ac3.mxf";  // metadata in the header partition and the same in partition 2
constexpr std::size_t kBodyPartition = 3553;
constexpr std::size_t kFooterPartition = 6822;
constexpr std::size_t kPartitionKind = 13;  // an octet of the key of a partition pack (ST 377-1)

const std::string kTimecodeUID = "\x74\xD2\x7B\x52\xF8\x46\x48\x4F\x83\x9C\x02\x4A\x10\x9C\x37\x4D";

/// The sample with other octets.
class Changed : public ScratchFolder {
 public:
  explicit Changed(const std::function<void(std::string&)>& change) {
    std::string bytes = readFile(sample(kSample));
    change(bytes);
    writeFile(file(), bytes);
  }
  std::string file() const { return path("changed.mxf"); }
};

/// Changes the name that the sample's writer gives itself.
void rename(const Edit& edit) { edit.replace("<rp210:ApplicationPlatform>", "<rp210:ApplicationPlatform>Plan 9, "); }

/// A sample whose header partition tells something that the footer partition tells otherwise.
class TwoVersions : public Edit {
 public:
  explicit TwoVersions(std::vector<std::string> exportOptions) : Edit(sample(kSample), {}) {
    replace("<rp210:TrackID>1<", "<rp210:TrackID>7<");
    replace("<rp210:TrackName>Timecode track<", "<rp210:TrackName>Another track<");
    EXPECT_EQ(inPlace({"--partition", "header"}).exitCode, 0);
    exportAgain(std::move(exportOptions));
  }
};

TEST(EditedPartition, KeepsMetadataThatSayTheSameUnderOtherInstanceUIDsAndTellsSo) {
  const Changed changed([](std::string& bytes) {
    for (auto at = bytes.find(kTimecodeUID, kFooterPartition); at != std::string::npos;
         at = bytes.find(kTimecodeUID, at)) {
      bytes[at] = '\x75';
    }
  });
  const Edit edit(changed.file(), {});
  rename(edit);
  const Result result = edit.intoCopy();
  EXPECT_EQ(
      edit.remarks(result),
      "partition 2 has the metadata of the header partition under other InstanceUIDs, and keeps them; --partition "
      "2 edits them, in an export of them\n");
  EXPECT_EQ(result.out, "1 set changed (1 property), 0 added, 0 removed; written to 1 partition\n");
  EXPECT_EQ(edit.exported(edit.copy(), "footer"), edit.exported(edit.original(), "footer"));
}

TEST(EditedPartition, IsToBeNamedWhereTheDocumentIsCloserToAnotherThanTheHeader) {
  const TwoVersions edit({"--partition", "footer"});
  rename(edit);
  const Result refused = edit.intoCopy();
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_EQ(edit.remarks(refused),
            "cannot be put into ORIGINAL: the document has 1 difference from an export of partition 2, and 3 from one "
            "of the header partition; tell "
            "which it was, with --partition 2 or --partition header\n");
  EXPECT_EQ(edit.files(), (std::vector<std::string>{"edited.xml", "original.mxf"}));
  for (const std::string partition : {"footer", "header"}) {
    const Result result = edit.intoCopy({"--partition", partition});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(edit.exported(edit.copy(), partition), readFile(edit.document()));
  }
}

TEST(EditedPartition, IsTheHeaderOneWhereTheDocumentIsCloserToThat) {
  const TwoVersions edit({});
  rename(edit);
  const Result result = edit.intoCopy();
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(edit.remarks(result),
            "partition 2 has other metadata than the header partition, and keeps them; --partition 2 edits them\n");
}

TEST(EditedPartition, IsToBeNamedWhereTheDocumentIsAsCloseToAnotherAsToTheHeader) {
  const Edit edit(sample(kSample), {"--partition", "footer"});
  rename(edit);
  EXPECT_EQ(edit.inPlace({"--partition", "footer"}).exitCode, 0);
  rename(edit);
  const Result refused = edit.intoCopy();
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_THAT(edit.remarks(refused),
              HasSubstr("the document has 1 difference from an export of partition 2, and 1 from "
                        "one of the header partition; tell which it was, with --partition 2 or "
                        "--partition header\n"));
  EXPECT_EQ(edit.intoCopy({"--partition", "footer"}).exitCode, 0);
}

/// Both exports are the same.
TEST(EditedPartition, IsTheHeaderOneWhereTheOthersDifferInWhatTheDocumentDoesNotShow) {
  const TwoVersions edit({"--start", "Identification"});
  rename(edit);
  const Result result = edit.intoCopy();
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_THAT(result.err, HasSubstr("partition 2 has other metadata than the header partition, and keeps them"));
}

TEST(EditedPartition, IsTheHeaderOneForSingleValues) {
  const TwoVersions edit({});
  const Result result =
      run({"set", edit.original(), "TimelineTrack.TrackID=1", "TimelineTrack.TrackName=Timecode track", "--start",
           "79.4E.DE.7C.04.C7.43.42.80.EE.FA.59.53.B7.25.B3", "-o", edit.copy()});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_TRUE(edit.exported(edit.copy()) == edit.exported(edit.copy(), "footer"));
}

TEST(EditedPartition, IsTheFooterThatTheHeaderNamesAlsoBehindAnotherFooter) {
  const Changed changed([](std::string& bytes) { bytes[kBodyPartition + kPartitionKind] = 4; });
  const Edit edit(changed.file(), {"--partition", "footer"});
  rename(edit);
  const Result result = edit.intoCopy({"--partition", "footer"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(edit.exported(edit.copy(), "footer"), readFile(edit.document()));
  EXPECT_EQ(edit.exported(edit.copy()), edit.exported(edit.original()));
}

TEST(EditedPart, KeepsWhatIsNotInItAndTellsHowMuch) {
  for (const std::string form : {"--flat", "--structural-only"}) {
    const Edit edit(sample(kSample), {"--start", "MaterialPackage", form});
    const Result result = edit.intoCopy({"--strict"});
    EXPECT_EQ(result.out, "nothing is edited\n");
    EXPECT_THAT(edit.remarks(result), testing::MatchesRegex("the document has no Preface and starts with the "
                                                            "MaterialPackage; [0-9]+ sets that such a document "
                                                            "leaves out are kept\n"));
    EXPECT_EQ(readFile(edit.copy()), readFile(edit.original()));
  }
}

/// Their references lead out of the part, to dark sets, and to sets that stand in another place.
TEST(EditedPart, IsNoEditInFilesWithDescriptiveAndDarkSets) {
  for (const char* name : {"bmx-rdd9-embedxml.header.mxf", "bmx-op1a-adm.header.mxf"}) {
    const ScratchFolder folder;
    writeFile(folder.path("whole.mxf"), wholeFile(name));
    const Edit edit(folder.path("whole.mxf"), {});
    for (const auto& form : std::vector<std::vector<std::string>>{{},
                                                                  {"--flat"},
                                                                  {"--structural-only", "--flat"},
                                                                  {"--start", "SourcePackage"},
                                                                  {"--start", "MaterialPackage", "--flat"},
                                                                  {"--start", "Timecode"},  // which refers to nothing
                                                                  {"--start", "Timecode", "--flat"},
                                                                  {"--start", "ContentStorage", "--structural-only"}}) {
      edit.exportAgain(form);
      const Result result = edit.intoCopy({"--strict"});
      EXPECT_EQ(result.out, "nothing is edited\n") << name << result.err;
      EXPECT_TRUE(readFile(edit.copy()) == readFile(edit.original())) << name;
    }
  }
}

TEST(EditedPart, LosesWhatIsTakenOutOfIt) {
  for (const std::string form : {"--flat", "--structural-only"}) {
    const Edit edit(sample(kSample), {"--start", "MaterialPackage", form});
    edit.cut("<rp210:TrackName>Timecode track", "</rp210:TrackName>");
    const Result result = edit.intoCopy();
    EXPECT_EQ(result.out, "1 set changed (1 property), 0 added, 0 removed; written to 2 partitions\n") << result.err;
    EXPECT_THAT(run({"export", edit.copy(), "--start", "MaterialPackage"}).out, testing::Not(HasSubstr("TrackName")));
  }
}

TEST(EditedPart, LosesSetsWithTheReferencesToThem) {
  const Edit edit(sample(kSample), {"--start", "MaterialPackage"});
  edit.cut("<s377m:TimelineTrack rp210:InstanceUID", "</s377m:TimelineTrack>");
  const Result result = edit.intoCopy();
  EXPECT_EQ(result.out, "1 set changed (1 property), 0 added, 3 removed; written to 2 partitions\n") << result.err;
}

/// The reference is in no part that starts below it.
TEST(EditedPart, KeepsSetsThatOthersReferTo) {
  const Edit edit(sample(kSample), {"--start", "MaterialPackage", "--flat"});
  edit.cut("<s377m:MaterialPackage rp210:InstanceUID", "</s377m:MaterialPackage>");
  const Result result = edit.intoCopy();
  EXPECT_EQ(result.out, "nothing is edited\n") << result.err;
  EXPECT_THAT(edit.remarks(result), HasSubstr("the document has no Preface and starts with the TimelineTrack; "));
  EXPECT_EQ(readFile(edit.copy()), readFile(edit.original()));
}

TEST(EditedPart, IsToldToBeKeptWhereItStartsWithASetThatIsNew) {
  const Edit edit(sample(kSample), {"--start", "MaterialPackage", "--flat"});
  edit.replace("<s377m:MaterialPackage rp210:InstanceUID=\"41", "<s377m:MaterialPackage rp210:InstanceUID=\"FF");
  const Result result = edit.intoCopy();
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(edit.remarks(result), HasSubstr(" that the document lacks are kept, since it has no Preface and starts "
                                              "with a set that is new\n"));
}

TEST(DocumentOfAnotherFile, ReplacesNothing) {
  const ScratchFolder folder;
  ASSERT_EQ(run({"export", sample("op1a.mxf"), "-o", folder.path("whole.xml")}).exitCode, 0);
  ASSERT_EQ(run({"export", sample("op1a.mxf"), "--start", "Identification", "-o", folder.path("part.xml")}).exitCode,
            0);
  for (const auto& [name, reason] : std::vector<std::pair<std::string, std::string>>{
           {"whole.xml", "the InstanceUID of its Preface is not 69.78.A3.6D.93.7F.4D.E1.AB.19.DE.B5.C5.F5.5E.2C"},
           {"part.xml", "no InstanceUID in it is one of theirs"}}) {
    const Result result = run({"import", folder.path(name), "--into", sample(kSample), "-o", folder.path("copy.mxf")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "mxfxml: " + folder.path(name) + ": cannot be put into " + sample(kSample) +
                              ": the document is not one of these metadata: " + reason +
                              "; edit an export of this file and partition\n");
    EXPECT_THAT(folder.files(), testing::ElementsAre("part.xml", "whole.xml"));
  }
}

}  // namespace
}  // namespace Vantor::Tool
