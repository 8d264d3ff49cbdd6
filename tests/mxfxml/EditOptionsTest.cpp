#include <gmock/gmock.h>

#include "Edit.h"

/// The options that `set` and `import --into` share.
namespace Vantor::Tool {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;

constexpr const char* kMaterialTimecode = "Timecode 74.D2.7B.52.F8.46.48.4F.83.9C.02.4A.10.9C.37.4D";
constexpr const char* kSourceTimecode = "Timecode 38.C9.92.B4.6A.68.42.48.89.77.53.69.87.F1.DF.3D";
constexpr const char* kLaterStart = "Timecode[1].StartTimecode=90000";
constexpr const char* kTwice = "which repeat each other\n";

class EditOptions : public testing::Test {
 protected:
  EditOptions() : edit_(sample(kOriginal), {}) {}

  Result set(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"set", edit_.original()});
    return run(arguments);
  }
  Result import(std::vector<std::string> options) const {
    options.insert(options.begin(), {"import", edit_.document(), "--into", edit_.original()});
    return run(options);
  }
  std::string diff() const { return run({"diff", sample(kOriginal), edit_.original()}).out; }
  bool isUntouched() const { return readFile(edit_.original()) == readFile(sample(kOriginal)); }
  /// A message about the file.
  std::string line(const std::string& text) const { return "mxfxml: " + edit_.original() + ": " + text + "\n"; }
  std::string refusal() const {
    return line("the edit would break 1 rule that the file keeps; nothing is written; --ignore RULE permits it");
  }
  std::string hint(const std::string& set) const {
    return line("hint: the old StartTimecode, 00:00:00:00, is still in " + set);
  }

  static constexpr const char* kOriginal = "gst-audio-ac3.mxf";  // the same metadata in header and footer partition
  const Edit edit_;
};

// --dry-run

TEST_F(EditOptions, ADryRunPrintsWhatWouldChangeAndWritesNothing) {
  const std::string difference =
      "value: " + std::string(kMaterialTimecode) + ": StartTimecode: 00:00:00:00 -> 00:07:58:136\n";
  const std::string summary = "1 set changed (1 property); would be written to 2 partitions, " + std::string(kTwice);
  edit_.replace("<rp210:StartTimecode>0<", "<rp210:StartTimecode>90000<");
  for (const Result& result : {set({kLaterStart, "--dry-run"}), import({"--dry-run"})}) {
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, difference + summary);
    EXPECT_EQ(result.err, hint(kSourceTimecode));
  }
  EXPECT_TRUE(isUntouched());
  EXPECT_THAT(edit_.files(), ElementsAre("edited.xml", "original.mxf"));
}

TEST_F(EditOptions, ADryRunPrintsWhatChangesAlongWithTheEdit) {
  const Result result = set({"TimelineTrack[1].TrackID=9", "--dry-run"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(
      result.out,
      "value: SoundDescriptor DF.7E.30.CB.90.92.45.6D.A8.9F.69.11.11.2F.35.BA: LinkedTrackID: 2 -> 9\n"
      "value: TimelineTrack 8D.9D.AD.D1.E1.B5.47.63.93.E4.7F.25.1B.C8.BF.00: TrackID: 2 -> 9\n"
      "value: SourceClip B0.05.E2.81.B8.73.40.93.AB.98.BE.C2.68.45.04.53: SourceTrackID: 2 -> 9\n"
      "3 sets changed (3 properties); with it: LinkedTrackID of 1 set, SourceTrackID of 1 set; would be written to "
      "2 partitions, which repeat each other\n");
  EXPECT_TRUE(isUntouched());
}

TEST_F(EditOptions, ADryRunEndsWithOneWhereTheEditWouldBeRefused) {
  const std::string track = "TimelineTrack DA.87.E0.C7.73.4F.44.E9.B7.42.6D.EE.B5.EF.08.2F: TrackID: ";
  const std::string printed = "value: " + track + "2 -> 1\nerror: track-id: partitions 0, 2: " + track +
                              "TrackID 1 occurs twice in the MaterialPackage\n"
                              "1 set changed (1 property); would be written to 2 partitions, " +
                              kTwice;
  const Result refused = set({"TimelineTrack[2].TrackID=1", "--dry-run"});
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_EQ(refused.out, printed);
  EXPECT_EQ(refused.err, refusal());
  const Result permitted = set(ignoring({"track-id"}, {"TimelineTrack[2].TrackID=1", "--dry-run"}));
  EXPECT_EQ(permitted.exitCode, 0);
  EXPECT_EQ(permitted.out, printed);
  EXPECT_EQ(permitted.err, "");
  EXPECT_TRUE(isUntouched());
}

TEST_F(EditOptions, ADryRunOfNoEditPrintsNoDifference) {
  for (const Result& result : {set({"Timecode[1].StartTimecode=0", "--dry-run"}), import({"--dry-run"})}) {
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "nothing is edited\n");
    EXPECT_EQ(result.err, "");
  }
}

TEST_F(EditOptions, ADryRunOfAPartOfAnEditEndsWithOne) {
  const Result result = set({kLaterStart, "Preface.ByteOrder=II", "--keep-going", "--dry-run"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.out, HasSubstr("1 set changed (1 property); would be written to 2 partitions"));
  EXPECT_TRUE(isUntouched());
}

TEST_F(EditOptions, ADryRunFailsWhereNothingCanBeWritten) {
  const std::string real = std::filesystem::canonical(edit_.original()).string();
  std::filesystem::permissions(real, std::filesystem::perms::owner_read);
  const Result readOnly = set({kLaterStart, "--dry-run"});
  EXPECT_EQ(readOnly.exitCode, 1);
  EXPECT_EQ(readOnly.err, "mxfxml: cannot change '" + edit_.original() + "': it is read-only\n");
  std::filesystem::permissions(real, std::filesystem::perms::owner_all);
  std::filesystem::create_hard_link(real, real + ".link");
  const Result linked = set({kLaterStart, "--dry-run"});
  EXPECT_EQ(linked.exitCode, 1);
  EXPECT_EQ(linked.err, set({kLaterStart}).err);
  EXPECT_TRUE(isUntouched());
}

TEST_F(EditOptions, ADryRunFailsWhereOldBytesCannotBeKept) {
  const std::string name = "Identification.ApplicationName=" + std::string(6000, 'x');
  const Result rehearsed = set({name, "--keep-undo", "--dry-run"});
  EXPECT_EQ(rehearsed.exitCode, 1);
  EXPECT_THAT(rehearsed.err, HasSubstr("the edit does not fit in place"));
  EXPECT_EQ(rehearsed.err, set({name, "--keep-undo"}).err);
  EXPECT_TRUE(isUntouched());
}

TEST_F(EditOptions, RemovingAPropertyThatIsNotThereIsMentioned) {
  const Result result = set({"--remove", "MaterialPackage.PackageUsage"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, "nothing is edited\n");
  EXPECT_THAT(result.err, MatchesRegex("mxfxml: .*: the MaterialPackage .* has no PackageUsage to remove\n"));
}

// --only

const std::string kNewPackage =
    "06.0A.2B.34.01.01.01.05.01.01.0D.22.13.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00."
    "00.00.01";

TEST_F(EditOptions, WithoutOnlyReferencesToARenamedPackageFollow) {
  const Result result = set({"SourcePackage.PackageID=" + kNewPackage});
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out,
            "3 sets changed (3 properties); with it: LinkedPackageID of 1 set, SourcePackageID of 1 set; written to 2 "
            "partitions, which repeat each other\n");
  EXPECT_THAT(diff(), HasSubstr(", different 3; properties compared 115, different 3\n"));
}

TEST_F(EditOptions, OnlyChangesThePropertyAlone) {
  const Result result =
      set(ignoring({"source-package", "linked-package"}, {"SourcePackage.PackageID=" + kNewPackage, "--only"}));
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, "1 set changed (1 property); written to 2 partitions, " + std::string(kTwice));
  EXPECT_THAT(diff(), HasSubstr(", different 1; properties compared 115, different 1\n"));
}

TEST_F(EditOptions, OnlyLeavesTheLabelsInPartitionPacksAlone) {
  edit_.replace("0D.01.02.01.01.01.09.00</rp210:OperationalPattern>",
                "0D.01.02.01.02.01.09.00</rp210:OperationalPattern>");
  const std::string label("\x06\x0E\x2B\x34\x04\x01\x01\x01\x0D\x01\x02\x01\x02\x01\x09\0", 16);
  const auto count = [&] {
    const std::string bytes = readFile(edit_.copy());
    std::size_t number = 0;
    for (auto at = bytes.find(label); at != std::string::npos; at = bytes.find(label, at + 1)) ++number;
    return number;
  };
  const Result followed = import({"-o", edit_.copy()});
  EXPECT_EQ(followed.out,
            "1 set changed (1 property); with it: the labels of 3 partition packs; written to 2 partitions, " +
                std::string(kTwice));
  EXPECT_EQ(count(), 5u) << "in two Prefaces and three partition packs";
  const Result only = import(ignoring({"pack-pattern"}, {"-o", edit_.copy(), "--only"}));
  EXPECT_EQ(only.out, "1 set changed (1 property); written to 2 partitions, " + std::string(kTwice));
  EXPECT_EQ(count(), 2u) << "in two Prefaces";
}

// --sign

/// The parts of a flat export from one text to the next of another.
std::vector<std::string> partsOf(const std::string& xml, const std::string& from, const std::string& to) {
  std::vector<std::string> parts;
  for (auto at = xml.find(from); at != std::string::npos; at = xml.find(from, at + 1)) {
    parts.push_back(xml.substr(at, xml.find(to, at) - at));
  }
  return parts;
}
std::string textIn(const std::string& xml, const std::string& property) {
  const std::string start = "<rp210:" + property + ">";
  const auto at = xml.find(start);
  return at == std::string::npos
             ? ""
             : xml.substr(at + start.size(), xml.find("</rp210:" + property, at) - at - start.size());
}

TEST_F(EditOptions, SignAddsAnIdentificationWithItsGenerationAndDates) {
  const Result result = set({"Timecode[2].StartTimecode=90000", "--sign"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, hint(kMaterialTimecode));
  EXPECT_EQ(result.out,
            "2 sets changed (5 properties), 1 added; signed; written to 2 partitions, " + std::string(kTwice));
  const std::string xml = edit_.flat(edit_.original());
  const auto identifications = partsOf(xml, "<s377m:Identification ", "</s377m:Identification>");
  ASSERT_EQ(identifications.size(), 2u);
  const std::string& signature = identifications[1];
  EXPECT_EQ(textIn(signature, "ApplicationName"), "mxfxml");
  EXPECT_EQ(textIn(signature, "ApplicationVersionString"), "0.2.0");
  const std::string generation = textIn(signature, "GenerationID");
  EXPECT_THAT(generation, MatchesRegex("[0-9A-F]{2}(\\.[0-9A-F]{2}){15}"));
  EXPECT_NE(generation, textIn(identifications[0], "GenerationID"));
  const std::string preface = partsOf(xml, "<s377m:Preface ", "</s377m:Preface>").at(0);
  EXPECT_EQ(textIn(preface, "FileLastModified"), textIn(signature, "FileModificationDate"));
  for (const std::string changed : {"Preface", "Timecode"}) {
    EXPECT_THAT(xml, HasSubstr("<s377m:" + changed + " rp210:GenerationUID=\"" + generation + "\""));
  }
  EXPECT_EQ(partsOf(xml, generation, "\n").size(), 3u) << "in the Identification and the two changed sets";
}

TEST_F(EditOptions, ASignedFileHasNothingNewForCheckToFind) {
  const std::string before = run({"check", edit_.original()}).out;
  edit_.replace("<rp210:StartTimecode>0<", "<rp210:StartTimecode>90000<");
  ASSERT_EQ(import({"--in-place", "--sign"}).exitCode, 0);
  ASSERT_EQ(set({"Timecode[1].StartTimecode=7", "--sign"}).exitCode, 0);
  EXPECT_EQ(run({"check", edit_.original()}).out, before);
  EXPECT_EQ(edit_.exported(edit_.original(), "footer"), edit_.exported(edit_.original()));
}

TEST_F(EditOptions, ASignatureOfNoEditIsNone) {
  EXPECT_EQ(set({"Timecode[1].StartTimecode=0", "--sign"}).out, "nothing is edited\n");
  EXPECT_TRUE(isUntouched());
}

// --keep-undo

TEST_F(EditOptions, KeptBytesUndoAnEdit) {
  edit_.replace("<rp210:StartTimecode>0<", "<rp210:StartTimecode>90000<");
  for (const bool isSet : {true, false}) {
    const Result result = isSet ? set({kLaterStart, "--keep-undo"}) : import({"--in-place", "--keep-undo"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "1 set changed (1 property); written to 2 partitions, " + std::string(kTwice));
    EXPECT_FALSE(isUntouched());
    EXPECT_THAT(edit_.files(), ElementsAre("edited.xml", "original.mxf", "original.mxf.vantor-undo"));
    const Result undone = run({"undo", edit_.original()});
    EXPECT_EQ(undone.exitCode, 0);
    EXPECT_EQ(undone.out, "the file is as it was before its last change\n");
    EXPECT_EQ(undone.err, "");
    EXPECT_TRUE(isUntouched());
    EXPECT_THAT(edit_.files(), ElementsAre("edited.xml", "original.mxf"));
  }
}

TEST_F(EditOptions, KeptBytesUndoTheLastOfTwoEdits) {
  ASSERT_EQ(set({kLaterStart, "--keep-undo"}).exitCode, 0);
  const std::string first = readFile(edit_.original());
  ASSERT_EQ(set({"Timecode[1].StartTimecode=7", "--keep-undo"}).exitCode, 0);
  EXPECT_EQ(run({"undo", edit_.original()}).exitCode, 0);
  EXPECT_TRUE(readFile(edit_.original()) == first);
}

TEST_F(EditOptions, NoBytesAreKeptOfNoEdit) {
  EXPECT_EQ(set({"Timecode[1].StartTimecode=0", "--keep-undo"}).out, "nothing is edited\n");
  EXPECT_THAT(edit_.files(), ElementsAre("edited.xml", "original.mxf"));
}

// --keep-going

TEST_F(EditOptions, KeepGoingWritesTheAssignmentsThatCanBeMade) {
  const std::vector<std::string> arguments = {kLaterStart, "Preface.ByteOrder=II", "Identification.ApplicationName=Ed"};
  const std::string wrong = line(
      "ByteOrder of Preface 69.78.A3.6D.93.7F.4D.E1.AB.19.DE.B5.C5.F5.5E.2C: 'II' is not a whole number from -32768 to "
      "32767; for example 25 or 0x19");
  const Result refused = set(arguments);
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_EQ(refused.out, "");
  EXPECT_EQ(refused.err, wrong);
  EXPECT_TRUE(isUntouched());
  const Result rest = set({arguments[0], arguments[1], arguments[2], "--keep-going"});
  EXPECT_EQ(rest.exitCode, 1);
  EXPECT_EQ(rest.out, "2 sets changed (2 properties); written to 2 partitions, " + std::string(kTwice));
  EXPECT_EQ(rest.err, wrong + hint(kSourceTimecode));
  EXPECT_THAT(diff(), HasSubstr(": StartTimecode: 00:00:00:00 -> 00:07:58:136\n"));
  EXPECT_THAT(diff(), HasSubstr(" -> \"Ed\"\n"));
  EXPECT_THAT(diff(), HasSubstr(", different 2; properties compared 115, different 2\n"));
}

TEST_F(EditOptions, KeepGoingEndsWithOneWhereNothingIsLeft) {
  const Result result = set({"Preface.ByteOrdr=1", "--keep-going"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "nothing is edited\n");
  EXPECT_EQ(result.err, line("Preface 69.78.A3.6D.93.7F.4D.E1.AB.19.DE.B5.C5.F5.5E.2C has no property 'ByteOrdr' (did "
                             "you mean 'ByteOrder'?)"));
  EXPECT_TRUE(isUntouched());
}

TEST_F(EditOptions, KeepGoingDoesNotBreakRules) {
  const Result result = set({"Preface.ByteOrder=II", "TimelineTrack[2].TrackID=1", "--keep-going"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(result.err, testing::EndsWith(refusal()));
  EXPECT_TRUE(isUntouched());
}

// Hints

TEST_F(EditOptions, AHintNamesOtherSetsThatHoldTheOldValue) {
  const std::string source = "SourcePackage 22.1E.14.F3.7C.58.4B.02.94.E6.26.D4.31.97.8E.40";
  for (const auto& [assignment, text] : std::vector<std::pair<std::string, std::string>>{
           {kLaterStart, "StartTimecode, 00:00:00:00, is still in " + std::string(kSourceTimecode)},
           {"TimelineTrack[4].TrackName=Time",
            "TrackName, \"Timecode track\", is still in TimelineTrack 79.4E.DE.7C.04.C7.43.42.80.EE.FA.59.53.B7.25.B3"},
           {"MaterialPackage.PackageLastModified=2027-01-01T00:00:00.000",
            "PackageLastModified (PackageModifiedDate), 2026-10-21T01:15:27.020, is still in " + source}}) {
    const Result result = set({assignment, "-o", edit_.copy()});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, line("hint: the old " + text));
  }
  EXPECT_EQ(set({kLaterStart, "Timecode[2].StartTimecode=90000"}).err, "");
}

}  // namespace
}  // namespace Vantor::Tool
