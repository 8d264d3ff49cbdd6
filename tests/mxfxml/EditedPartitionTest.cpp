#include <gmock/gmock.h>

#include "Edit.h"

/// Which file, which state of it and which of its partitions an edited document is for.
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

/// A sample whose header partition has other values than the footer partition.
class TwoVersions : public Edit {
 public:
  explicit TwoVersions(std::vector<std::string> exportOptions) : Edit(sample(kSample), {}) {
    replace("<rp210:TrackID>1<", "<rp210:TrackID>7<");
    replace("<rp210:TrackName>Timecode track<", "<rp210:TrackName>Another track<");
    EXPECT_EQ(inPlace(ignoring({"repeated-metadata"}, {"--partition", "header"})).exitCode, 0);
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
  const std::string remark =
      "partition 2 has the metadata of the header partition under other InstanceUIDs, and keeps them; --partition "
      "2 edits them, in an export of them\n";
  EXPECT_EQ(edit.remarks(edit.intoCopy()),
            "warning: repeated-metadata: partition 0: differences from the metadata of partition 2: 1\n" + remark +
                "the edit would break 1 rule that the file keeps; nothing is written; --ignore RULE permits it\n");
  const Result result = edit.intoCopy(ignoring({"repeated-metadata"}));
  EXPECT_EQ(edit.remarks(result), remark);
  EXPECT_EQ(result.out, "1 set changed (1 property); written to 1 partition\n");
  EXPECT_EQ(edit.exported(edit.copy(), "footer"), edit.exported(edit.original(), "footer"));
}

constexpr const char* kOtherMetadata =
    "partition 2 has other metadata than the header partition, and keeps them; --partition 2 edits them\n";
constexpr const char* kEarlierState =
    "warning: the file has changed since the document was exported; the document is compared with the file as it is "
    "now\n";

TEST(EditedPartition, IsTheOneThatTheDocumentWasExportedFrom) {
  for (const char* partition : {"footer", "2"}) {
    const TwoVersions edit({"--partition", partition});
    rename(edit);
    const Result result = edit.intoCopy();
    EXPECT_EQ(result.out, "1 set changed (1 property); written to 1 partition\n");
    EXPECT_EQ(edit.remarks(result), "");
    EXPECT_EQ(edit.exported(edit.copy(), "footer"), edit.content());
    EXPECT_EQ(edit.exported(edit.copy()), edit.exported(edit.original()));
  }
  const TwoVersions edit({});
  rename(edit);
  const Result result = edit.intoCopy();
  EXPECT_EQ(result.out, "1 set changed (1 property); written to 1 partition\n");
  EXPECT_EQ(edit.remarks(result), kOtherMetadata);
  EXPECT_EQ(edit.exported(edit.copy()), edit.content());
  EXPECT_EQ(edit.exported(edit.copy(), "footer"), edit.exported(edit.original(), "footer"));
}

TEST(EditedPartition, IsToBeGivenForAnotherThanTheHeaderWhereTheDocumentDoesNotDescribeItself) {
  const TwoVersions edit({"--partition", "footer"});
  rename(edit);
  edit.withdrawDescription();
  const Result footer = edit.intoCopy({"--partition", "footer"});
  EXPECT_EQ(footer.out, "1 set changed (1 property); written to 1 partition\n");
  EXPECT_EQ(edit.remarks(footer), "");
  EXPECT_EQ(edit.exported(edit.copy(), "footer"), edit.content());
  EXPECT_EQ(edit.exported(edit.copy()), edit.exported(edit.original()));
  const Result header = edit.intoCopy();
  EXPECT_EQ(header.out, "2 sets changed (3 properties); written to 1 partition\n");
  EXPECT_EQ(edit.remarks(header), kOtherMetadata);
  EXPECT_EQ(edit.exported(edit.copy()), edit.content());
}

/// To the header partition, the document is one of an earlier state.
TEST(EditedPartition, MayBeAnotherThanTheOneThatTheDocumentWasExportedFrom) {
  const TwoVersions edit({"--partition", "footer"});
  rename(edit);
  const Result result = edit.intoCopy({"--partition", "header"});
  EXPECT_EQ(result.out, "2 sets changed (3 properties); written to 1 partition\n");
  EXPECT_EQ(edit.remarks(result), kEarlierState);
  EXPECT_EQ(edit.exported(edit.copy()), edit.content());
  EXPECT_EQ(edit.exported(edit.copy(), "footer"), edit.exported(edit.original(), "footer"));
  EXPECT_EQ(edit.intoCopy({"--partition", "header", "--expect-unchanged"}).exitCode, 1);
}

TEST(EditedPartition, OfTheDescriptionHasToBeInTheFile) {
  const Edit edit(sample(kSample), {});
  edit.replace("partition=\"header\"", "partition=\"7\"");
  const Result result = edit.intoCopy();
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err, "mxfxml: " + edit.original() + ": the file has no partition 7, only 3, counted from 0\n");
}

TEST(EditedPartition, KeepsOtherMetadataBesideAnEditOfAPart) {
  const TwoVersions edit({"--start", "Identification"});
  rename(edit);
  const Result result = edit.intoCopy();
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(edit.remarks(result), kOtherMetadata);
}

TEST(EditedState, IsTheOneNowWhereTheFileHasChanged) {
  const Edit edit(sample(kSample), {});
  edit.replace("<rp210:TrackID>1<", "<rp210:TrackID>7<");
  ASSERT_EQ(edit.remarks(edit.inPlace()), "");
  const std::string after = readFile(edit.original());
  const Result again = edit.inPlace();
  EXPECT_EQ(again.exitCode, 0);
  EXPECT_EQ(again.out, "nothing is edited\n");
  EXPECT_EQ(edit.remarks(again), kEarlierState);
  EXPECT_EQ(readFile(edit.original()), after);
  rename(edit);
  const Result second = edit.inPlace({"--strict"});
  EXPECT_EQ(second.out, "1 set changed (1 property); written to 2 partitions, which repeat each other\n");
  EXPECT_EQ(edit.remarks(second), kEarlierState);
  EXPECT_EQ(edit.exported(edit.original()), edit.content());
}

TEST(EditedState, HasToBeTheExportedOneWhereThatIsExpected) {
  const Edit edit(sample(kSample), {});
  edit.replace("<rp210:TrackID>1<", "<rp210:TrackID>7<");
  EXPECT_EQ(edit.inPlace({"--expect-unchanged"}).exitCode, 0);
  const std::string after = readFile(edit.original());
  rename(edit);
  const Result refused = edit.inPlace({"--expect-unchanged"});
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_EQ(edit.remarks(refused),
            "cannot be put into ORIGINAL: the file has changed since the document was exported\n");
  EXPECT_EQ(readFile(edit.original()), after);
}

/// What the other edit changed becomes again what the document has.
TEST(EditedState, OfTheFileIsComparedWithADocumentOfAnEarlierOne) {
  const Edit edit(sample(kSample), {});
  ASSERT_EQ(run({"set", edit.original(), "Timecode[1].StartTimecode=9"}).exitCode, 0);
  rename(edit);
  const Result result = edit.intoCopy();
  EXPECT_EQ(result.out, "2 sets changed (2 properties); written to 2 partitions, which repeat each other\n");
  EXPECT_EQ(edit.remarks(result), kEarlierState);
  EXPECT_EQ(edit.exported(edit.copy()), edit.content());
}

TEST(EditedState, IsAnEarlierOneWhereTheDigestIsEdited) {
  const Edit edit(sample(kSample), {});
  edit.replace("metadata=\"A", "metadata=\"B");
  rename(edit);
  const Result result = edit.intoCopy({"--strict"});
  EXPECT_EQ(result.out, "1 set changed (1 property); written to 2 partitions, which repeat each other\n");
  EXPECT_EQ(edit.remarks(result), kEarlierState);
  EXPECT_EQ(edit.intoCopy({"--expect-unchanged"}).exitCode, 1);
}

TEST(EditedState, IsNotKnownWithoutDescription) {
  const Edit edit(sample(kSample), {});
  ASSERT_EQ(run({"set", edit.original(), "Timecode[1].StartTimecode=9"}).exitCode, 0);
  edit.withdrawDescription();
  const Result result = edit.intoCopy();
  EXPECT_EQ(result.out, "1 set changed (1 property); written to 2 partitions, which repeat each other\n");
  EXPECT_EQ(edit.remarks(result), "");
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
  const Result result = edit.intoCopy(ignoring({"repeated-metadata"}, {"--partition", "footer"}));
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(edit.exported(edit.copy(), "footer"), edit.content());
  EXPECT_EQ(edit.exported(edit.copy()), edit.exported(edit.original()));
}

TEST(EditedPart, KeepsWhatIsNotInIt) {
  for (const std::string form : {"--flat", "--structural-only"}) {
    const Edit edit(sample(kSample), {"--start", "MaterialPackage", form});
    const Result result = edit.intoCopy({"--strict"});
    EXPECT_EQ(result.out, "nothing is edited\n");
    EXPECT_EQ(edit.remarks(result), "");
    EXPECT_EQ(readFile(edit.copy()), readFile(edit.original()));
  }
}

/// Their references lead out of the part, to dark sets, and to sets that stand in another place.
TEST(EditedPart, IsNoEditInFilesWithDescriptiveAndDarkSets) {
  for (const char* name : {"bmx-rdd9-embedxml.header.mxf", "bmx-op1a-adm.header.mxf"}) {
    const ScratchFolder folder;
    writeFile(folder.path("whole.mxf"), wholeFile(name));
    const Edit edit(folder.path("whole.mxf"), {});
    for (const auto& form :
         std::vector<std::vector<std::string>>{{},
                                               {"--flat"},
                                               {"--structural-only", "--flat"},
                                               {"--start", "SourcePackage"},
                                               {"--start", "MaterialPackage", "--flat"},
                                               {"--start", "Timecode[1]"},  // which refers to nothing
                                               {"--start", "Timecode[1]", "--flat"},
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
    EXPECT_EQ(result.out, "1 set changed (1 property); written to 2 partitions, which repeat each other\n")
        << result.err;
    EXPECT_THAT(run({"export", edit.copy(), "--start", "MaterialPackage"}).out, testing::Not(HasSubstr("TrackName")));
  }
}

TEST(EditedPart, LosesSetsWithTheReferencesToThem) {
  const Edit edit(sample(kSample), {"--start", "MaterialPackage"});
  edit.cut("<s377m:TimelineTrack rp210:InstanceUID", "</s377m:TimelineTrack>");
  const Result result = edit.intoCopy();
  EXPECT_EQ(result.out, "1 set changed (1 property), 3 removed; written to 2 partitions, which repeat each other\n")
      << result.err;
}

/// The references are in no part that starts below it.
TEST(EditedPart, HasToHaveTheSetThatItStartsFrom) {
  const std::string message =
      "cannot be put into ORIGINAL: the document omits the MaterialPackage "
      "41.B3.1A.F9.95.F2.4B.72.AE.C8.96.5D.AC.A5.45.E7, but the Preface "
      "69.78.A3.6D.93.7F.4D.E1.AB.19.DE.B5.C5.F5.5E.2C refers to it, which the document does not show\n";
  const Edit removed(sample(kSample), {"--start", "MaterialPackage", "--flat"});
  removed.cut("<s377m:MaterialPackage rp210:InstanceUID", "</s377m:MaterialPackage>");
  const Edit renamed(sample(kSample), {"--start", "MaterialPackage", "--flat"});
  renamed.replace("<s377m:MaterialPackage rp210:InstanceUID=\"41", "<s377m:MaterialPackage rp210:InstanceUID=\"FF");
  for (const Edit* edit : {&removed, &renamed}) {
    const Result result = edit->intoCopy();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(edit->remarks(result), message);
    EXPECT_EQ(edit->files(), (std::vector<std::string>{"edited.xml", "original.mxf"}));
  }
}

/// A document of one file, and another file.
class OfAnotherFile : public ScratchFolder {
 public:
  explicit OfAnotherFile(const std::vector<std::string>& options = {}) {
    std::vector<std::string> arguments = {"export", sample("op1a.mxf"), "-o", path("a.xml")};
    arguments.insert(arguments.end(), options.begin(), options.end());
    EXPECT_EQ(run(arguments).exitCode, 0);
  }
  void withdrawDescription() const { writeFile(path("a.xml"), withoutDescription(readFile(path("a.xml")))); }
  Result intoCopy(const std::vector<std::string>& options = {}) const {
    std::vector<std::string> arguments = {"import", path("a.xml"), "--into", sample(kSample), "-o", path("b.mxf")};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return run(arguments);
  }
  void expectRefusal(const std::string& reason, const std::vector<std::string>& options = {}) const {
    const Result result = intoCopy(options);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err,
              "mxfxml: " + path("a.xml") + ": cannot be put into " + sample(kSample) + ": " + reason + "\n");
    EXPECT_EQ(files(), std::vector<std::string>{"a.xml"});
  }
};

TEST(DocumentOfAnotherFile, IsRefusedWithAPackageOfEach) {
  const OfAnotherFile document;
  const std::string reason =
      "the document is of another file: it has the package "
      "06.0A.2B.34.01.01.01.05.01.01.0D.00.13.56.F0.6D.52.94.71.34.F9.56.F0.6D.00.52.94.71.34.F9.56.00, the file has "
      "the package 06.0A.2B.34.01.01.01.05.01.01.0D.22.13.9B.BD.B8.45.EE.F7.3A.7A.98.45.6A.B9.3F.97.6A.95.3F.0F.F9; "
      "--merge-anyway merges it all the same";
  document.expectRefusal(reason);
  document.withdrawDescription();
  document.expectRefusal(reason);
}

TEST(DocumentOfAnotherFile, IsMergedWhereThatIsAskedFor) {
  const OfAnotherFile document;
  const Result result = document.intoCopy({"--merge-anyway", "--ignore", "format-version", "--ignore", "index-rate"});
  EXPECT_EQ(
      result.out,
      "27 sets added, 19 removed; with it: the labels of 3 partition packs; written to 2 partitions, which repeat each "
      "other\n")
      << result.err;
  EXPECT_EQ(withoutDescription(run({"export", document.path("b.mxf")}).out),
            withoutDescription(readFile(document.path("a.xml"))));
}

TEST(DocumentOfAnotherFile, IsRefusedWithoutPackagesToo) {
  const OfAnotherFile document({"--start", "Identification"});
  const std::string reason =
      "the document is of another file or partition: none of its InstanceUIDs is in the file; --merge-anyway merges "
      "it all the same";
  document.expectRefusal(reason);
  document.expectRefusal(
      "the document starts from a set that the file does not have: "
      "AD.AB.44.24.2F.25.4D.C7.92.FF.00.0C.00.00.00.00",
      {"--merge-anyway"});
  document.withdrawDescription();
  document.expectRefusal(reason, {"--start", "Identification"});
}

TEST(DocumentOfThisFile, MayHaveOtherPackageIdentifiersAfterAnEdit) {
  const Edit edit(sample(kSample), {});
  std::string xml = readFile(edit.document());
  const std::string from = "PackageID>06.0A.2B.34.01.01.01.05", to = "PackageID>06.0A.2B.34.01.01.01.06";
  for (auto at = xml.find(from); at != std::string::npos; at = xml.find(from)) xml.replace(at, from.size(), to);
  writeFile(edit.document(), xml);
  const std::string summary = "4 sets changed (4 properties); written to 2 partitions, which repeat each other\n";
  const Result described = edit.intoCopy({"--strict", "--expect-unchanged"});
  EXPECT_EQ(described.out, summary) << described.err;
  EXPECT_EQ(edit.exported(edit.copy()), edit.content());
  edit.withdrawDescription();
  const Result refused = edit.intoCopy();
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_THAT(refused.err, HasSubstr("the document is of another file: it has the package 06.0A.2B.34.01.01.01.06."));
  EXPECT_EQ(edit.intoCopy({"--merge-anyway"}).out, summary);
}

}  // namespace
}  // namespace Vantor::Tool
