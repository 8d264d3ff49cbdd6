#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "Edit.h"
#include "Program.h"
#include "ScratchFolder.h"

namespace Vantor::Tool {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::MatchesRegex;

constexpr const char* kSample = "gst-audio-ac3.mxf";  // its header and footer partitions have the same metadata

constexpr const char* kSecondTrack = "DA.87.E0.C7.73.4F.44.E9.B7.42.6D.EE.B5.EF.08.2F";
constexpr const char* kTimecodeTrack = "79.4E.DE.7C.04.C7.43.42.80.EE.FA.59.53.B7.25.B3";
constexpr const char* kFirstTrack = "8D.9D.AD.D1.E1.B5.47.63.93.E4.7F.25.1B.C8.BF.00";
constexpr const char* kSecondTimecode = "Timecode 74.D2.7B.52.F8.46.48.4F.83.9C.02.4A.10.9C.37.4D";

/// A file that properties are set in.
class SetFile {
 public:
  SetFile() { std::filesystem::copy_file(sample(kSample), path()); }

  std::string path() const { return folder_.path("a.mxf"); }
  std::string copy() const { return folder_.path("b.mxf"); }
  std::vector<std::string> files() const { return folder_.files(); }
  Result set(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"set", path()});
    return run(arguments);
  }
  /// What is printed of an old value that other sets still hold.
  std::string hint(const std::string& text) const { return "mxfxml: " + path() + ": hint: the old " + text + "\n"; }
  std::string diff() const { return run({"diff", sample(kSample), path()}).out; }
  bool isUntouched() const { return readFile(path()) == readFile(sample(kSample)); }

 private:
  ScratchFolder folder_;
};

TEST(Set, ChangesPropertiesAndNothingElse) {
  const SetFile file;
  const Result result =
      file.set({"Identification.ApplicationName=\xC3\x84 & <b>", "Timecode[2].StartTimecode=01:00:00:00"});
  EXPECT_EQ(result.err, file.hint("StartTimecode, 00:00:00:00, is still in " + std::string(kSecondTimecode)));
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, "2 sets changed (2 properties); written to 2 partitions, which repeat each other\n");
  const std::string diff = file.diff();
  EXPECT_THAT(diff,
              HasSubstr(": ApplicationName (ProductName): \"GStreamer Multimedia Framework\" -> \"\xC3\x84 & <b>\"\n"));
  EXPECT_THAT(diff, HasSubstr(": StartTimecode: 00:00:00:00 -> 01:00:00:00\n"));
  EXPECT_THAT(diff, HasSubstr("sets compared 19, different 2; properties compared 115, different 2\n"));
  EXPECT_EQ(withoutDescription(run({"export", file.path(), "--partition", "footer"}).out),
            withoutDescription(run({"export", file.path()}).out));
}

TEST(Set, HintsAtAStartTimecodeThatItsNewBaseMoves) {
  const SetFile file;
  const Result result = file.set({"Timecode[2].StartTimecode=01:00:00:00"});
  ASSERT_EQ(result.exitCode, 0);
  const Result moved = file.set(ignoring({"timecode-rate"}, {"Timecode[2].FramesPerSecond=24"}));
  EXPECT_EQ(moved.exitCode, 0) << moved.err;
  EXPECT_THAT(moved.err, ContainsRegex("hint: the StartTimecode of the Timecode [0-9A-F.]+ now reads [0-9:]+, was "
                                       "01:00:00:00; set StartTimecode=01:00:00:00, too, to keep it\n"));
  const Result both = file.set(
      ignoring({"timecode-rate"}, {"Timecode[2].FramesPerSecond=48", "Timecode[2].StartTimecode=01:00:00:00"}));
  EXPECT_EQ(both.exitCode, 0) << both.err;
  EXPECT_THAT(both.err, testing::Not(HasSubstr("now reads")));
}

TEST(Set, AddsAPropertyThatWasNotThere) {
  const SetFile file;
  EXPECT_EQ(file.set({"Preface.ByteOrder=18761"}).exitCode, 0);
  EXPECT_THAT(file.diff(), HasSubstr("added property: Preface"));
}

TEST(Set, TakesTheSetThatAnInstanceUIDNames) {
  const SetFile file;
  const std::string first = kFirstTrack;
  EXPECT_EQ(file.set({"TimelineTrack.TrackID=9", "--start", first}).exitCode, 0);
  EXPECT_THAT(file.diff(), HasSubstr("value: TimelineTrack " + first + ": TrackID: 2 -> 9\n"));
}

TEST(Set, TakesTheSetWhoseInstanceUIDStandsBeforeTheLastPoint) {
  for (const std::string set : {kFirstTrack, "urn:uuid:8d9dadd1-e1b5-4763-93e4-7f251bc8bf00"}) {
    const SetFile file;
    EXPECT_EQ(file.set(ignoring({"required-property"}, {set + ".Origin=9", "--remove", set + ".EssenceTrackNumber"}))
                  .exitCode,
              0)
        << set;
    const std::string diff = file.diff();
    EXPECT_THAT(diff, HasSubstr(std::string("value: TimelineTrack ") + kFirstTrack + ": Origin: 0 -> 9\n"));
    EXPECT_THAT(diff,
                HasSubstr(std::string("missing property: TimelineTrack ") + kFirstTrack + ": EssenceTrackNumber"));
    EXPECT_THAT(diff, HasSubstr("different 1; properties compared 115, different 2\n"));
  }
}

TEST(Set, TakesTheSetWithAnInstanceUIDOnlyWhereItIsTheNamedOne) {
  for (const auto& arguments :
       std::vector<std::vector<std::string>>{{"TimelineTrack[2].TrackID=9", "--start", kFirstTrack},
                                             {"--remove", "TimelineTrack[2].TrackID", "--start", kFirstTrack}}) {
    const SetFile file;
    const Result result = file.set(arguments);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "mxfxml: " + file.path() + ": the set '" + kFirstTrack + "' is no TimelineTrack[2]\n");
    EXPECT_TRUE(file.isUntouched());
  }
  const SetFile file;
  EXPECT_EQ(file.set({"TimelineTrack[1].TrackID=9", "--start", kFirstTrack}).exitCode, 0);
  EXPECT_THAT(file.diff(), HasSubstr(std::string("value: TimelineTrack ") + kFirstTrack + ": TrackID: 2 -> 9\n"));
}

TEST(Set, WritesNothingWhenOneOfSeveralAssignmentsIsWrong) {
  for (const auto& [wrong, exitCode] : std::vector<std::pair<std::string, int>>{
           {"Preface.ByteOrder=x", 1}, {"Preface.ByteOrdr=1", 1}, {"Preface", 2}}) {
    for (const bool isFirst : {false, true}) {
      const SetFile file;
      const std::string right = "Identification.ApplicationName=Ed";
      EXPECT_EQ(file.set({isFirst ? wrong : right, isFirst ? right : wrong}).exitCode, exitCode);
      EXPECT_TRUE(file.isUntouched());
      EXPECT_EQ(file.files(), std::vector<std::string>{"a.mxf"});
    }
  }
}

TEST(Set, TakesPropertiesOut) {
  const SetFile file;
  const Result result =
      file.set({"--remove", "Identification.ApplicationName", "--remove", "TimelineTrack[2].EssenceTrackNumber",
                "TimelineTrack[4].TrackID=9", "--ignore", "required-property"});
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, "3 sets changed (3 properties); written to 2 partitions, which repeat each other\n");
  const std::string diff = file.diff();
  EXPECT_THAT(diff, ContainsRegex("missing property: Identification .*: ApplicationName .ProductName.: \"GStreamer"));
  EXPECT_THAT(diff, ContainsRegex("missing property: TimelineTrack .*: EssenceTrackNumber .TrackNumber.: "));
  EXPECT_THAT(diff, HasSubstr("properties compared 115, different 3\n"));
}

TEST(Set, TakesAPropertyOutOfTheSetThatAnInstanceUIDNames) {
  const SetFile file;
  EXPECT_EQ(file.set(ignoring({"required-property"},
                              {"--remove", "TimelineTrack.EssenceTrackNumber", "--start", kFirstTrack}))
                .exitCode,
            0);
  EXPECT_THAT(file.diff(), HasSubstr(std::string("missing property: TimelineTrack ") + kFirstTrack +
                                     ": EssenceTrackNumber (TrackNumber): "));
}

TEST(Set, TakesReferencesOutAndKeepsTheirTargets) {
  const SetFile file;
  EXPECT_EQ(file.set(ignoring({"required-property", "unreached-set"}, {"--remove", "Preface.IdentificationList"})).out,
            "1 set changed (1 property); written to 2 partitions, which repeat each other\n");
  EXPECT_THAT(file.diff(), HasSubstr("sets compared 19, different 1; properties compared 115, different 1\n"));
}

TEST(Set, DoesNothingForAPropertyThatIsNotThere) {
  const SetFile file;
  EXPECT_EQ(file.set({"--remove", "Preface.ByteOrder"}).out, "nothing is edited\n");
  EXPECT_TRUE(file.isUntouched());
}

TEST(Set, TakesNothingOutThatCannotBe) {
  for (const auto& [removal, reason] : std::vector<std::pair<std::string, std::string>>{
           {"Preface.InstanceUID",
            ": the InstanceUID of Preface 69.78.A3.6D.93.7F.4D.E1.AB.19.DE.B5.C5.F5.5E.2C cannot be removed: "
            "references to the set would break\n"},
           {"Preface.ByteOrdr",
            ": Preface 69.78.A3.6D.93.7F.4D.E1.AB.19.DE.B5.C5.F5.5E.2C has no property 'ByteOrdr' (did you mean "
            "'ByteOrder'?)\n"},
           {"TimelineTrack.TrackName",
            ": TimelineTrack is ambiguous: 4 sets (see \"mxfxml info --sets\"); use TimelineTrack[1] (TrackID 2, in "
            "SourcePackage), TimelineTrack[2] (TrackID 2, in MaterialPackage), TimelineTrack[3] (TrackID 1, TrackName "
            "\"Timecode track\", in MaterialPackage), TimelineTrack[4] (TrackID 1, TrackName \"Timecode track\", in "
            "SourcePackage), or TimelineTrack[*] for all\n"}}) {
    const SetFile file;
    const Result result = file.set({"--remove", removal});
    EXPECT_EQ(result.exitCode, 1) << removal;
    EXPECT_THAT(result.err, HasSubstr(reason)) << removal;
    EXPECT_TRUE(file.isUntouched()) << removal;
  }
}

TEST(Set, MakesATextEmpty) {
  const SetFile file;
  EXPECT_EQ(file.set({"Identification.ApplicationName="}).exitCode, 0);
  EXPECT_THAT(file.diff(), HasSubstr(": ApplicationName (ProductName): \"GStreamer Multimedia Framework\" -> \"\"\n"));
}

/// A copy of the file in which octets have become others, everywhere.
void replaceAll(const SetFile& file, const std::string& from, const std::string& to) {
  std::string bytes = readFile(file.path());
  ASSERT_NE(bytes.find(from), std::string::npos);
  for (auto at = bytes.find(from); at != std::string::npos; at = bytes.find(from, at + 1)) {
    bytes.replace(at, from.size(), to);
  }
  writeFile(file.path(), bytes);
}

/// The sample in which two tracks have one InstanceUID.
TEST(Set, EditsOneOfTheSetsThatShareAnInstanceUID) {
  const std::string second = "\x79\x4E\xDE\x7C\x04\xC7\x43\x42\x80\xEE\xFA\x59\x53\xB7\x25\xB3";
  const std::string shared = "\x8D\x9D\xAD\xD1\xE1\xB5\x47\x63\x93\xE4\x7F\x25\x1B\xC8\xBF" + std::string(1, 0);
  for (const char* name : {"TimelineTrack", kFirstTrack}) {
    const SetFile file;
    replaceAll(file, second, shared);
    std::string expected = readFile(file.path());
    const Result result = file.set({std::string(name) + "[1].Origin=9"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "1 set changed (1 property); written to 2 partitions, which repeat each other\n");
    const std::string edited = readFile(file.path());
    ASSERT_EQ(edited.size(), expected.size());
    std::size_t different = 0;
    for (std::size_t i = 0; i < edited.size(); ++i) different += edited[i] == expected[i] ? 0 : 1;
    EXPECT_EQ(different, 2u) << "one octet in each of two partitions";
  }
}

TEST(Set, NamesTheChoicesWhereSetsShareAnInstanceUID) {
  const SetFile file;
  const std::string second = "\x79\x4E\xDE\x7C\x04\xC7\x43\x42\x80\xEE\xFA\x59\x53\xB7\x25\xB3";
  replaceAll(file, second, "\x8D\x9D\xAD\xD1\xE1\xB5\x47\x63\x93\xE4\x7F\x25\x1B\xC8\xBF" + std::string(1, 0));
  const std::string before = readFile(file.path()), track = kFirstTrack;
  const Result result = file.set({"TimelineTrack.TrackID=9", "--start", track});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err, "mxfxml: " + file.path() + ": " + track +
                            " is ambiguous: 2 sets (see \"mxfxml info --sets\"); use " + track +
                            "[1] (TrackID 2, in SourcePackage) or " + track +
                            "[2] (TrackID 1, TrackName \"Timecode track\")\n");
  EXPECT_EQ(readFile(file.path()), before);
}

TEST(Set, EditsASetWithoutInstanceUID) {
  const SetFile file;
  const std::string item("\x3C\x0A\0\x10\x85\x43\xAA\xCE", 8);  // local tag and length; the value starts 85.43
  replaceAll(file, item, std::string("\x3C\x7F\0\x10\x85\x43\xAA\xCE", 8));
  const Result result = file.set({"Identification.ApplicationName=Ed"});
  EXPECT_EQ(result.out, "1 set changed (1 property); written to 2 partitions, which repeat each other\n") << result.err;
  EXPECT_THAT(run({"export", file.path()}).out, HasSubstr("<rp210:ApplicationName>Ed</rp210:ApplicationName>"));
}

constexpr const char* kIdentification = "Identification 85.43.AA.CE.4F.14.40.97.80.CE.25.A8.1C.87.90.74";

TEST(Set, WarnsOfAValueThatManyReadersCannotRead) {
  const SetFile file;
  const std::string longest(32767, 'x'), longer(32768, 'x');
  EXPECT_EQ(file.set({"Identification.ApplicationName=" + longest}).err, "");
  EXPECT_THAT(file.set({"Identification.ApplicationName=" + longer}).err, HasSubstr(": warning: long-values: "));
  const Result result = file.set(ignoring({"long-values"}, {"Identification.ApplicationName=" + longer}));
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "mxfxml: " + file.path() + ": warning: set " + kIdentification +
                            ": a value of 65536 bytes needs BER-coded lengths, which many readers do not know\n");
}

TEST(Set, DoesNotWarnAgainOfASetThatHadSuchAValue) {
  const SetFile file;
  const auto name = "Identification.ApplicationName=" + std::string(40000, 'x');
  ASSERT_EQ(file.set(ignoring({"long-values"}, {name})).exitCode, 0);
  EXPECT_EQ(file.set({"Identification.ApplicationSupplierName=Ed"}).err, "");
  EXPECT_EQ(file.set({"Identification.ApplicationName=" + std::string(50000, 'y')}).err, "");
}

TEST(Set, IsRefusedWithAReferenceToASetThatIsNotThere) {
  const SetFile file;
  const auto assign = [&file](const std::string& target, const std::vector<std::string>& rules) {
    return file.set(ignoring(rules, {"TimelineTrack[1].TrackSegment=" + target}));
  };
  const std::string missing = "11.11.11.11.22.22.33.33.44.44.55.55.55.55.55.55";
  const Result refused = assign(missing, {"unreached-set"});
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_EQ(refused.out, "");
  EXPECT_EQ(refused.err,
            "mxfxml: " + file.path() + ": error: dangling-reference: partitions 0, 2: TimelineTrack " + kFirstTrack +
                ": TrackSegment (Sequence): no set has the InstanceUID " + missing + "\nmxfxml: " + file.path() +
                ": the edit would break 1 rule that the file keeps; nothing is written; --ignore RULE permits it\n");
  EXPECT_TRUE(file.isUntouched());
  const Result there = assign("FC.1A.AE.AC.DE.38.4E.A6.85.C5.8A.73.06.23.40.B0", {"unreached-set", "shared-set"});
  EXPECT_EQ(there.exitCode, 0);
  EXPECT_EQ(there.err, "");
  EXPECT_EQ(assign(missing, {"dangling-reference"}).exitCode, 0);
}

TEST(Set, TakesCompoundValuesAndLists) {
  const SetFile file;
  const Result result =
      file.set(ignoring({"format-version"},
                        {"Preface.FileLastModified=2027-02-09T03:04:05.008", "Preface.FormatVersion=1.3",
                         "Identification.ApplicationVersion=1.2.3.4.5",
                         "Preface.EssenceContainers=[06.0E.2B.34.04.01.01.02.0D.01.03.01.02.06.03.00, "
                         "06.0E.2B.34.04.01.01.02.0D.01.03.01.02.04.40.01]",
                         "MaterialPackage.PackageTracks=[" + std::string(kSecondTrack) + ", " + kTimecodeTrack + "]"}));
  EXPECT_EQ(result.out,
            "3 sets changed (5 properties); with it: the labels of 3 partition packs; written to 2 partitions, which "
            "repeat each other\n");
  EXPECT_THAT(result.err, MatchesRegex("mxfxml: .*: note: unused-container: [^\n]*\n"));
  const std::string diff = file.diff();
  EXPECT_THAT(diff,
              HasSubstr(": FileLastModified (LastModifiedDate): 2026-10-21T01:15:27.020 -> 2027-02-09T03:04:05.008\n"));
  EXPECT_THAT(diff, HasSubstr(": FormatVersion (Version): 1.2 -> 1.3\n"));
  EXPECT_THAT(diff, HasSubstr(": ApplicationVersion (ProductVersion): 1.22.0.0 release -> 1.2.3.4 private\n"));
  EXPECT_THAT(diff, HasSubstr(" -> [06.0E.2B.34.04.01.01.02.0D.01.03.01.02.06.03.00, "
                              "MXFGCFrameWrappedMPEGESAudioStream0SID]\n"));
  EXPECT_THAT(diff, HasSubstr(": PackageTracks[0] (Tracks): " + std::string(kTimecodeTrack) + " (TimelineTrack) -> " +
                              kSecondTrack));
}

TEST(Set, WritesACopyWhenAskedTo) {
  const SetFile file;
  EXPECT_EQ(file.set({"TimelineTrack[1].TrackID=9", "-o", file.copy()}).exitCode, 0);
  EXPECT_TRUE(file.isUntouched());
  EXPECT_EQ(run({"diff", file.path(), file.copy()}).exitCode, 1);
}

TEST(Set, DoesNothingForAValueThatIsThereAlready) {
  const SetFile file;
  EXPECT_EQ(file.set({"TimelineTrack[1].TrackID=2"}).out, "nothing is edited\n");
  EXPECT_TRUE(file.isUntouched());
}

const std::string kThePreface = " Preface 69.78.A3.6D.93.7F.4D.E1.AB.19.DE.B5.C5.F5.5E.2C";

TEST(Set, RefusesWhatCannotBeAndLeavesTheFileAlone) {
  for (const auto& [assignment, reason] : std::vector<std::pair<std::string, std::string>>{
           {"Prefce.ByteOrder=1", ": the dictionary has no set 'Prefce' (did you mean 'Preface'?)\n"},
           {"Filler.ComponentLength=1", ": the partition has no set Filler\n"},
           {"Track[.TrackID=1", ": the bracket in 'Track[.TrackID=1' is not closed\n"},
           {"Preface.ByteOrdr=1", kThePreface + " has no property 'ByteOrdr' (did you mean 'ByteOrder'?)\n"},
           {"TimelineTrack.TrackID=1",
            ": TimelineTrack is ambiguous: 4 sets (see \"mxfxml info --sets\"); use TimelineTrack[1] (TrackID 2, in "
            "SourcePackage), TimelineTrack[2] (TrackID 2, in MaterialPackage), TimelineTrack[3] (TrackID 1, TrackName "
            "\"Timecode track\", in MaterialPackage), TimelineTrack[4] (TrackID 1, TrackName \"Timecode track\", in "
            "SourcePackage), or TimelineTrack[*] for all\n"},
           {"TimelineTrack[5].TrackID=1", ": there is no TimelineTrack[5]: the partition has 4 of these sets\n"},
           {"Preface.ByteOrder=x", ": ByteOrder of" + kThePreface +
                                       ": 'x' is not a whole number from -32768 to 32767; for example 25 or 0x19\n"},
           {"TimelineTrack[1].EditRate=25p",
            ": '25p' is not a rate or ratio; for example 25, 30000/1001, 29.97 or 16:9\n"},
           {"Preface.ByteOrder=", ": ByteOrder of" + kThePreface +
                                      ": '' is not a whole number from -32768 to 32767; for example 25 or 0x19\n"},
           {"TimelineTrack[2].EditRate=", ": '' is not a rate or ratio; for example 25, 30000/1001, 29.97 or 16:9\n"},
           {"Preface.InstanceUID=1",
            ": the InstanceUID of" + kThePreface + " cannot be set from a text: references to the set would break\n"},
           {"Preface.FileLastModified=now",
            ": 'now' is not a date and time; for example 2024-02-09T03:04:05.008Z or 2024-02-09\n"},
           {"Identification.ApplicationVersion=v1",
            ": 'v1' is not a version; for example 1.2.3.4 release or 1.2 beta\n"},
           {"Preface.EssenceContainers=a", ": 'a' is not a list; for example ["}}) {
    const SetFile file;
    const Result result = file.set({assignment});
    EXPECT_EQ(result.exitCode, 1) << assignment;
    EXPECT_THAT(result.err, HasSubstr(reason)) << assignment;
    EXPECT_TRUE(file.isUntouched()) << assignment;
    EXPECT_EQ(file.files(), std::vector<std::string>{"a.mxf"});
  }
}

void expectUsageError(const std::vector<std::string>& arguments, const std::string& message) {
  const SetFile file;
  const Result result = file.set(arguments);
  EXPECT_EQ(result.exitCode, 2) << message;
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "mxfxml: " + message + "; see mxfxml set --help\n");
  EXPECT_TRUE(file.isUntouched());
  EXPECT_EQ(file.files(), std::vector<std::string>{"a.mxf"});
}

TEST(Set, TakesArgumentsOfAnotherShapeForWrongUsage) {
  for (const std::string text : {"Preface", "Preface=1", "Preface.=1", ".TrackID=1", "=1"}) {
    expectUsageError({text},
                     "'" + text +
                         "' is no assignment; write Set.Property=VALUE, or Set[2].Property=VALUE for the second set "
                         "of a name");
  }
  for (const std::string text : {"Preface", "Preface.", "Preface.ByteOrder=1", ".TrackID"}) {
    expectUsageError({"--remove", text}, "'" + text +
                                             "' is no property; write Set.Property, or Set[2].Property for the "
                                             "second set of a name");
  }
  expectUsageError({"Identification.ApplicationName=a\xff"},
                   "'Identification.ApplicationName=a\xef\xbf\xbd' is no text in UTF-8");
}

TEST(Set, TakesNoTwoValuesForAProperty) {
  for (const std::string second : {"TimelineTrack[2].TrackID=9", "TimelineTrack[2].TrackID=8"}) {
    expectUsageError({"TimelineTrack[2].TrackID=8", "TimelineTrack[1].TrackID=7", second},
                     "TimelineTrack[2].TrackID is given more than once");
  }
  expectUsageError({"Preface.ByteOrder=1", "Preface[1].ByteOrder=2"}, "Preface[1].ByteOrder is given more than once");
}

TEST(Set, TakesNoPropertyOutThatItGivesAValue) {
  expectUsageError({"Preface.ByteOrder=1", "--remove", "Preface.ByteOrder"},
                   "Preface.ByteOrder is given more than once");
}

TEST(Set, NamesTheStartThatIsNotThere) {
  for (const auto& [start, reason] : std::vector<std::pair<std::string, std::string>>{
           {"Preface", "the set 'Preface' is no TimelineTrack\n"},
           {"TimelineTrack",
            "TimelineTrack is ambiguous: 4 sets (see \"mxfxml info --sets\"); use TimelineTrack[1] (TrackID 2, in "
            "SourcePackage), TimelineTrack[2] (TrackID 2, in MaterialPackage), TimelineTrack[3] (TrackID 1, TrackName "
            "\"Timecode track\", in MaterialPackage) or TimelineTrack[4] (TrackID 1, TrackName \"Timecode track\", in "
            "SourcePackage)\n"},
           {"8D.9D.AD.D2", "the partition has no set whose InstanceUID begins with 8D.9D.AD.D2\n"}}) {
    const SetFile file;
    const Result result = file.set({"TimelineTrack.TrackID=9", "--start", start});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "mxfxml: " + file.path() + ": " + reason);
    EXPECT_TRUE(file.isUntouched());
  }
}

TEST(Set, NeedsSomethingToDo) {
  const Result result = run({"set", sample(kSample)});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.err, "mxfxml: Set.Property=VALUE, --remove or --from is required; see mxfxml set --help\n");
}

}  // namespace
}  // namespace Vantor::Tool
