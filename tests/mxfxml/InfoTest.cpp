#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <sstream>

#include "ChangedSample.h"
#include "JSON/Text.h"
#include "Program.h"
#include "ScratchFolder.h"

namespace Vantor::Tool {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

TEST(Info, PrintsPartitionsAndSets) {
  const Result result = run({"info", sample("gst-audio-ac3.mxf"), "--partitions"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, R"(  size                 10608 bytes
  MXF version          1.2
  operational pattern  OP1a  06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00  MXF OP1a SingleItem SinglePackage MultiTrack Stream Internal
  essence container    06.0E.2B.34.04.01.01.02.0D.01.03.01.02.04.40.01  MXF-GC Frame-wrapped MPEG-ES AudioStream-0 SID

partitions: 3, as the random index pack lists them
  no  kind    status           offset  header bytes  index bytes  index SID  body SID  body offset
   0  header  closed complete       0          3432            0          0         0            0
   1  body    closed complete    3553             0            0          0         1            0
   2  footer  closed complete    6822          3432          176          2         0            0

sets in the header partition: 19
  1  ContentStorage
  1  EssenceData (EssenceContainerData)
  1  Identification
  1  MaterialPackage
  1  Preface
  4  Sequence
  1  SoundDescriptor (GenericSoundEssenceDescriptor)
  2  SourceClip
  1  SourcePackage
  2  Timecode (TimecodeComponent)
  4  TimelineTrack (Track)
)");
}

TEST(Info, ListsSetsAsTheSetCommandTakesThem) {
  const Result result = run({"info", sample("gst-audio-ac3.mxf"), "--sets"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, R"(sets in the header partition: 19
  ContentStorage    A60F894D
  EssenceData       (EssenceContainerData), BodySID 1,
                    LinkedPackageUID ...B9.3F.97.6A.95.3F.0F.F9, 3B4A3B74
  Identification    CompanyName "GStreamer",
                    ProductName "GStreamer Multimedia Framework",
                    ModificationDate 2026-10-21T01:15:27.020, 8543AACE
  MaterialPackage   Name "Material package",
                    PackageUID ...A8.60.6E.55.EA.41.0D.60, 41B31AF9
  Preface           ObjectModelVersion 1, 6978A36D
  Sequence[1]       SoundEssenceTrack, in TimelineTrack[1] of SourcePackage,
                    65DCEE2E
  Sequence[2]       SoundEssenceTrack, in TimelineTrack[2] of MaterialPackage,
                    FC1AAEAC
  Sequence[3]       SMPTE12MTimecodeTrackInactive...,
                    in TimelineTrack[3] of MaterialPackage, 8BA4E137
  Sequence[4]       SMPTE12MTimecodeTrackInactive...,
                    in TimelineTrack[4] of SourcePackage, BF42B8BC
  SoundDescriptor   (GenericSoundEssenceDescriptor), LinkedTrackID 2,
                    AudioSamplingRate 48000, ChannelCount 2, in SourcePackage,
                    DF7E30CB
  SourceClip[1]     SoundEssenceTrack, SourceTrackID 0, StartPosition 0,
                    in Sequence[1] of SourcePackage, A1107F13
  SourceClip[2]     SoundEssenceTrack, SourceTrackID 2, StartPosition 0,
                    in Sequence[2] of MaterialPackage, B005E281
  SourcePackage     Name "Source package",
                    PackageUID ...B9.3F.97.6A.95.3F.0F.F9, 221E14F3
  Timecode[1]       (TimecodeComponent), StartTimecode 00:00:00:00,
                    RoundedTimecodeBase 188, in Sequence[3] of MaterialPackage,
                    74D27B52
  Timecode[2]       StartTimecode 00:00:00:00, RoundedTimecodeBase 188,
                    in Sequence[4] of SourcePackage, 38C992B4
  TimelineTrack[1]  (Track), TrackID 2, SoundEssenceTrack, in SourcePackage,
                    8D9DADD1
  TimelineTrack[2]  TrackID 2, SoundEssenceTrack, in MaterialPackage, DA87E0C7
  TimelineTrack[3]  TrackID 1, TrackName "Timecode track",
                    SMPTE12MTimecodeTrackInactive..., in MaterialPackage,
                    794EDE7C
  TimelineTrack[4]  TrackID 1, TrackName "Timecode track",
                    SMPTE12MTimecodeTrackInactive..., in SourcePackage, 0F57D3F6
)");
}

/// The texts before the first blanks of the rows of the list.
std::vector<std::string> choicesIn(const std::string& list) {
  std::vector<std::string> choices;
  std::istringstream lines(list);
  std::string line;
  for (std::getline(lines, line); std::getline(lines, line) && line.rfind("  ", 0) == 0;) {
    if (line[2] != ' ') choices.push_back(line.substr(2, line.find(' ', 2) - 2));
  }
  return choices;
}

TEST(Info, ListsSetsByTextsThatTheSetCommandTakes) {
  const auto choices = choicesIn(run({"info", sample("gst-audio-ac3.mxf"), "--sets"}).out);
  ASSERT_EQ(choices.size(), 19u);
  std::vector<std::string> command = {"set", sample("gst-audio-ac3.mxf"), "--dry-run"};
  for (const auto& choice : choices) command.insert(command.end(), {"--remove", choice + ".ApplicationPlugInObjects"});
  const Result result = run(command);
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 19) << "each is another set without this property";
}

TEST(Info, CountsDarkSetsByKey) {
  const Result result = run({"info", sample("libmxf-writeaviddv50.header.mxf"), "--partitions", "--no-own-dictionary"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, AllOf(HasSubstr("OP-Atom  06.0E.2B.34.04.01.01.02.0D.01.02.01.10.02.00.00  "
                                          "MXF-OP Atom N Tracks 1 SourceClip\n"),
                                HasSubstr("sets in the header partition: 437\n"),
                                HasSubstr("dark sets: 2\n"
                                          "  1  80.53.08.00.36.21.08.04.B3.B3.98.A5.1C.90.11.D4\n"
                                          "  1  96.13.B3.8A.87.34.87.46.F1.02.96.F0.56.E0.4D.2A\n"
                                          "unknown properties: 3\n")));
}

TEST(Info, CountsPropertiesThatTheirSetsDoNotList) {
  const std::string objectModelVersion("\x3B\x07\x00\x04\x00\x00\x00\x01", 8);  // in the Preface
  const std::string trackID("\x48\x01\x00\x04\x00\x00\x00\x01", 8);
  const std::string nothing("\xFF\xF0\x00\x04\x00\x00\x00\x01", 8);
  EXPECT_THAT(run({"info", sample("op1a.mxf"), "--partitions"}).out, Not(HasSubstr("properties: ")));
  const ChangedSample misplaced("op1a.mxf", objectModelVersion, trackID);
  EXPECT_THAT(run({"info", misplaced.path(), "--partitions"}).out, EndsWith("\n\nmisplaced properties: 1\n"));
  const ChangedSample unknown("op1a.mxf", objectModelVersion, nothing);
  EXPECT_THAT(run({"info", unknown.path(), "--partitions"}).out,
              EndsWith("\n\nunknown properties: 1\n"
                       "  1  Preface: unknown property FF.F0  the dictionary does not have it  00000001\n"));
}

TEST(Info, CountsTheSetsOfTheChosenPartition) {
  const Result footer = run({"info", sample("gst-audio-ac3.mxf"), "--partitions", "--partition", "footer"});
  EXPECT_EQ(footer.exitCode, 0);
  EXPECT_THAT(footer.out, HasSubstr("\nsets in the footer partition: 19\n"));
  EXPECT_THAT(run({"info", sample("gst-audio-ac3.mxf"), "--partitions", "--partition", "2"}).out,
              HasSubstr("\nsets in partition 2: 19\n"));
}

TEST(Info, TellsHowFarADamagedFileIsSound) {
  const ScratchFolder folder;
  const std::string runIn = "12345";
  const std::string whole = readFile(sample("gst-audio-ac3.mxf"));
  writeFile(folder.path("cut.mxf"), runIn + whole.substr(0, 6000));
  const Result result = run({"info", folder.path("cut.mxf"), "--partitions"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out,
              AllOf(HasSubstr("\n  run-in               5 bytes\n"), HasSubstr("  sound up to          offset "),
                    HasSubstr("partitions: 2, as a walk through the file met them\n")));
}

/// The value of a field, as it stands in the summary; empty for none.
std::string fieldOf(const std::string& summary, const std::string& name) {
  const auto at = summary.find("\n  " + name + "  ");
  if (at == std::string::npos) return {};
  const auto value = summary.find_first_not_of(' ', at + 3 + name.size());
  return summary.substr(value, summary.find('\n', value) - value);
}

TEST(Info, PrintsWhatPeopleAskFirst) {
  const Result result = run({"info", sample("bmx-as02-as02b.mxf")});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(fieldOf(result.out, "title"), "as02clip");
  EXPECT_EQ(fieldOf(result.out, "start timecode"), "10:00:00:00 at 25");
  EXPECT_EQ(fieldOf(result.out, "duration"), "00:00:00.080, 2 frames at 25");
  EXPECT_EQ(fieldOf(result.out, "size"), "1920x1080, stored as 1920x540");
  EXPECT_THAT(result.out, HasSubstr("\nAudio, track 2001 Audio1, 2002 Audio2\n"));
}

TEST(Info, ColoursOnlyOnATerminalOrWhenAskedTo) {
  const std::string plain = run({"info", sample("op1a.mxf")}).out;
  EXPECT_THAT(plain, AllOf(StartsWith("General\n"), Not(HasSubstr("\x1b["))));
  const auto coloured = run({"info", sample("op1a.mxf"), "--color", "always"}).out;
  EXPECT_THAT(coloured, AllOf(StartsWith("\x1b[1mGeneral\x1b[0m\n\x1b[2m  "), HasSubstr("\x1b[1mFile\x1b[0m\n")));
  EXPECT_EQ(std::regex_replace(coloured, std::regex("\x1b\\[[0-9]*m"), ""), plain);
}

TEST(Info, PrintsSummaryPartitionsAndSetsForAll) {
  const auto file = sample("gst-audio-ac3.mxf");
  const auto all = run({"info", "--all", file}).out;
  EXPECT_THAT(all, testing::StartsWith(run({"info", file}).out));
  EXPECT_THAT(all, EndsWith(run({"info", "--sets", file}).out));
  EXPECT_THAT(all, HasSubstr("partitions: 3, as the random index pack lists them\n"));
}

TEST(Info, GoesOnWithTheOtherFilesAndNamesEach) {
  const ScratchFolder folder;
  writeFile(folder.path("none.mxf"), "nothing");
  const auto one = sample("gst-audio-ac3.mxf"), other = sample("op1a.mxf");
  const Result result = run({"info", one, folder.path("none.mxf"), other});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr(folder.path("none.mxf") + ": "));
  EXPECT_EQ(result.out, one + ":\n" + run({"info", one}).out + "\n" + other + ":\n" + run({"info", other}).out);
}

/// Opens the header partition of a sample.
ChangedSample openedSample() {
  const std::string status("\x01\x02\x04\x00", 4);  // octets 13 to 16 of a header partition pack's key, closed complete
  return {"gst-audio-ac3.mxf", std::string("\x0D\x01\x02\x01", 4) + status,
          std::string("\x0D\x01\x02\x01\x01\x02\x01\x00", 8)};
}

TEST(Info, ShowsAPartitionInABetterStateThanTheHeader) {
  const auto open = openedSample();
  const auto summary = run({"info", open.path()}).out;
  EXPECT_EQ(fieldOf(summary, "best metadata"), "footer partition, closed complete");
  EXPECT_EQ(fieldOf(summary, "shown here"), "the footer partition");
  EXPECT_EQ(fieldOf(run({"info", sample("gst-audio-ac3.mxf")}).out, "shown here"), "the header partition");
  EXPECT_EQ(fieldOf(run({"info", open.path(), "--partition", "header"}).out, "shown here"), "the header partition");
}

TEST(OtherViews, NameAPartitionInABetterStateThanTheHeader) {
  const auto open = openedSample();
  const auto note =
      "mxfxml: " + open.path() + ": note: the footer partition is in a better state; --partition footer reads it\n";
  const std::vector<std::vector<std::string>> commands = {
      {"get", open.path(), "Preface.FormatVersion"}, {"show", open.path()}, {"export", open.path()}};
  for (auto words : commands) {
    EXPECT_EQ(run(words).err, note) << words[0];
    words.insert(words.end(), {"--partition", "header"});
    EXPECT_EQ(run(words).err, "") << words[0];
  }
  EXPECT_EQ(run({"show", sample("gst-audio-ac3.mxf")}).err, "");
}

TEST(Info, ClaimsNoBestMetadataOfAPipe) {
  const auto file = sample("gst-audio-ac3.mxf");
  const auto pipe = "cat '" + file + "' | \"$0\" \"$@\"";
  const auto text = runScript(pipe, {"info", "-"});
  EXPECT_EQ(text.exitCode, 0) << text.err;
  EXPECT_THAT(text.out, testing::AllOf(HasSubstr("partitions"), Not(HasSubstr("best metadata"))));
  const auto json = runScript(pipe, {"info", "--json", "-"});
  EXPECT_THAT(json.out, testing::AllOf(HasSubstr("\"partitions\""), Not(HasSubstr("\"best\""))));
  EXPECT_THAT(run({"info", "--json", file}).out, HasSubstr("\"best\""));
}

TEST(Info, CountsWhatItCannotDecode) {
  const auto summary = run({"info", sample("libmxf-writeaviddv50.header.mxf"), "--no-own-dictionary"}).out;
  EXPECT_EQ(fieldOf(summary, "dark sets"), "2");
  EXPECT_EQ(fieldOf(summary, "unknown properties"), "3: CDCIDescriptor: unknown property FF.F6");
  EXPECT_THAT(summary, HasSubstr("1 other: mxfxml show\n"));
}

TEST(Info, KeepsValuesThatCannotBeReadApartFromUnknownProperties) {
  const auto file = sample("bmx-rdd9-embedxml.header.mxf");
  const auto summary = run({"info", file}).out;
  EXPECT_EQ(fieldOf(summary, "values that cannot be read"), "4: AES3PCMDescriptor.FixedChannelStatusData");
  EXPECT_THAT(summary, Not(HasSubstr("unknown properties")));
  EXPECT_THAT(run({"info", "--json", file}).out,
              testing::AllOf(HasSubstr("\"unknownProperties\": 0"), HasSubstr("\"unreadableValues\": 4")));
}

/// A member of the first file in JSON, on one line.
std::string describedMember(const Result& result, const char* name) {
  const auto json = JSON::fromText(result.out);
  const auto* member = json.find("files")->items()->at(0).find(name);
  return member == nullptr ? "" : JSON::toLine(*member);
}

TEST(Info, DescribesFilesAsJSON) {
  const Result result = run({"info", "--json", sample("bmx-as02-as02b.mxf")});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(describedMember(result, "title"), "\"as02clip\"");
  EXPECT_EQ(describedMember(result, "start"),
            R"({"value":900000,"framesPerSecond":25,"dropFrame":false,"text":"10:00:00:00"})");
  EXPECT_THAT(describedMember(result, "duration"),
              testing::AllOf(HasSubstr(R"("seconds":0.08)"), HasSubstr(R"("text":"00:00:00.080")")));
  EXPECT_THAT(describedMember(result, "tracks"),
              testing::AllOf(HasSubstr(R"("width":1920)"), HasSubstr(R"("text":"16:9")")));
  EXPECT_EQ(describedMember(result, "partition"), "\"header\"");
  EXPECT_THAT(describedMember(result, "counts"), HasSubstr(R"("Preface":1)"));
}

TEST(Info, DescribesAFileThatCannotBeReadByItsProblem) {
  const Result result = run({"info", "--json", "missing.mxf", sample("op1a.mxf")});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("missing.mxf"));
  EXPECT_THAT(describedMember(result, "problem"), HasSubstr("missing.mxf"));
  EXPECT_EQ(JSON::fromText(result.out).find("files")->items()->size(), 2u);
}

TEST(Info, DescribesWhatTheFileDefinesOfItsOwn) {
  const Result result = run({"info", "--json", sample("libmxf-writeaviddv50.header.mxf")});
  EXPECT_THAT(describedMember(result, "ownDictionary"), HasSubstr("\"problems\":["));
}

TEST(Info, RefusesJSONOfLists) {
  for (const char* option : {"--partitions", "--sets", "--all-sets", "--all"}) {
    EXPECT_EQ(run({"info", "--json", option, sample("op1a.mxf")}).exitCode, 2) << option;
  }
}

TEST(Info, PrintsWhatIsWholeOfAFileThatItCannotReadToTheEnd) {
  const ScratchFolder folder;
  writeFile(folder.path("cut.mxf"), readFile(sample("op1a.mxf")).substr(0, 3000));
  const Result result = run({"info", folder.path("cut.mxf")});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, StartsWith("General\n"));
  const std::string start = "mxfxml: " + folder.path("cut.mxf") + ": ";
  EXPECT_EQ(result.err, start +
                            "missing: at byte offset 2980: the file ends within set ContentStorage: 3 of its 92 bytes "
                            "are there; 20 bytes are left out\n" +
                            start + "the metadata are damaged at 1 place; 2 whole sets are there\n");
}

TEST(Info, FailsWhenItsTextCannotBeWritten) {
  const Result result = run({"info", sample("op1a.mxf")}, Out::kFullDevice);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, testing::StrEq("mxfxml: cannot write to standard output: No space left on device\n"));
}

/// A copy of a sample with the title in other UTF-16 code units, as many as before.
std::string withTitle(const ScratchFolder& folder, std::u16string_view title) {
  const auto octetsOf = [](std::u16string_view text) {
    std::string octets;
    for (const char16_t unit : text) octets += {static_cast<char>(unit >> 8), static_cast<char>(unit & 0xff)};
    return octets;
  };
  const auto old = octetsOf(u"Material package");
  auto file = readFile(sample("gst-audio-ac3.mxf"));
  for (auto at = file.find(old); at != std::string::npos; at = file.find(old)) {
    file.replace(at, old.size(), octetsOf(title));
  }
  writeFile(folder.path("a.mxf"), file);
  return folder.path("a.mxf");
}

TEST(Info, ShowsATitleWithNULsInside) {
  const ScratchFolder folder;
  using namespace std::string_view_literals;
  const auto file = withTitle(folder, u"Tape 01\0\0Part 2\0"sv);
  const Result result = run({"info", file});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_THAT(result.out, HasSubstr("  title                Tape 01\\u0000\\u0000Part 2\n"));
  EXPECT_THAT(result.out, HasSubstr("MaterialPackage.PackageName"));
  EXPECT_THAT(run({"info", "--json", file}).out, HasSubstr(R"("title": "Tape 01\u0000\u0000Part 2")"));
}

TEST(Info, LeavesOutATitleThatIsNoText) {
  const ScratchFolder folder;
  using namespace std::string_view_literals;
  for (const auto title : {u"Half \xd800 A\0       "sv, u"\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"sv}) {
    const Result result = run({"info", withTitle(folder, title)});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_THAT(result.out, Not(HasSubstr("title")));
  }
}

}  // namespace
}  // namespace Vantor::Tool
