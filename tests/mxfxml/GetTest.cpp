#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "JSON/Text.h"
#include "Program.h"
#include "ScratchFolder.h"
#include "tests/SampleFiles.h"

/// What `mxfxml get` prints, and how it ends.
namespace Vantor::Tool {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

Result get(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "get");
  return run(arguments);
}

/// What is found in one sample.
std::string found(const std::string& path, const std::string& name = "op1a.mxf") {
  const auto result = get({sample(name), path});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, "");
  return result.out;
}

/// One value of the first file in JSON.
std::string memberOf(const Result& result, std::size_t value, const char* member) {
  const auto json = JSON::fromText(result.out);
  return JSON::toLine(*json.find("files")->items()->at(0).find("values")->items()->at(value).find(member));
}

TEST(Get, PrintsTheValueAlone) {
  EXPECT_EQ(found("Identification.ApplicationSupplierName", "gst-audio-ac3.mxf"), "GStreamer\n");
  EXPECT_EQ(found("Identification.CompanyName", "gst-audio-ac3.mxf"), "GStreamer\n");
  EXPECT_EQ(found("MaterialPackage/Timecode.StartTimecode", "bmx-as02-as02b.mxf"), "10:00:00:00\n");
  EXPECT_EQ(found("MPEGVideoDescriptor.ImageAspectRatio"), "4:3\n");
}

TEST(Get, PrintsOneLineForEachPropertyInTheirOrder) {
  const auto result = get({sample("gst-audio-ac3.mxf"), "Identification.ApplicationName", "Preface.FormatVersion"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_THAT(result.out, testing::MatchesRegex("GStreamer [^\n]*\n1\\.[23]\n"));
}

TEST(Get, PrintsTheValueOfEachSetOnDemand) {
  const auto ids = found("TimelineTrack[*].TrackID", "bmx-as02-as02b.mxf");
  EXPECT_GT(std::count(ids.begin(), ids.end(), '\n'), 2);
  EXPECT_EQ(found("TimelineTrack[1].TrackID", "bmx-as02-as02b.mxf"), ids.substr(0, ids.find('\n') + 1));
}

TEST(Get, PrintsAValueOnceThatAllSetsHave) {
  EXPECT_EQ(found("Timecode.FramesPerSecond", "bmx-as02-as02b.mxf"), "25\n");
  EXPECT_EQ(found("Timecode[*].FramesPerSecond", "bmx-as02-as02b.mxf").substr(0, 6), "25\n25\n");
}

TEST(Get, PrintsATableWithALineForEachFile) {
  const auto one = sample("op1a.mxf"), other = sample("gst-audio-ac3.mxf");
  const auto result =
      get({"--table", "-p", "MPEGVideoDescriptor.ImageAspectRatio", "-p", "Timecode[*].FramesPerSecond", one, other});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err, "");
  auto rates = found("Timecode[*].FramesPerSecond", "gst-audio-ac3.mxf");
  rates.replace(rates.find('\n'), 1, "; ");
  EXPECT_EQ(result.out, "file\tMPEGVideoDescriptor.ImageAspectRatio\tTimecode[*].FramesPerSecond\n" + one +
                            "\t4:3\t25; 25\n" + other + "\t\t" + rates);
}

TEST(Get, KeepsTabsAndLineFeedsOutOfTheCellsOfATable) {
  const ScratchFolder folder;
  const auto file = folder.path("a\tb.mxf");
  const std::string name = "Identification.ApplicationName";
  const auto changed = run({"set", sample("gst-audio-ac3.mxf"), name + "=\"one\\ttwo\\nthree\"", "-o", file});
  ASSERT_EQ(changed.exitCode, 0) << changed.err;
  const auto value = get({file, name}).out;
  const auto table = get({"--table", file, name}).out;
  EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 2);
  EXPECT_EQ(std::count(table.begin(), table.end(), '\t'), 2);
  EXPECT_THAT(table, EndsWith("\t" + value));
  EXPECT_THAT(value, HasSubstr("\\t"));
  EXPECT_THAT(value, HasSubstr("\\n"));
}

TEST(Get, LeavesAFileThatCannotBeReadOutOfATable) {
  const auto result = get({"--table", "-p", "Preface.FormatVersion", "missing.mxf", sample("op1a.mxf")});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 2);
  EXPECT_THAT(result.err, HasSubstr("missing.mxf"));
}

TEST(Get, NamesTheKindForAllSetsWhereAStarStandsForIt) {
  const auto result = get({sample("op1a.mxf"), "*.TrackID"});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_THAT(result.err, HasSubstr("'*' is no kind of sets; write InterchangeObject[*] for sets of all kinds, "
                                    "or a kind, such as TimelineTrack[*]"));
  EXPECT_THAT(get({sample("op1a.mxf"), "*[1].TrackID"}).err, HasSubstr("'*' in '*[1]' is no kind of sets; write"));
  EXPECT_EQ(get({sample("op1a.mxf"), "InterchangeObject[*].TrackID"}).exitCode, 0);
}

TEST(Get, FindsNamesWithoutTheSignsBetweenTheirWords) {
  EXPECT_THAT(get({sample("op1a.mxf"), "AS11CoreFramework.AS_11_Series_Title"}).err,
              HasSubstr("(did you mean 'DM_AS_11_Core_Framework'"));
}

TEST(Get, RefusesSetsWithDifferentValuesAsSetDoes) {
  const auto file = sample("bmx-as02-as02b.mxf");
  const auto result = get({file, "TimelineTrack.TrackID"});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(result.err, StartsWith("mxfxml: " + file + ": TimelineTrack is ambiguous: "));
  EXPECT_THAT(result.err, EndsWith("or TimelineTrack[*] for all\n"));
}

TEST(Get, ShowsThePathThatPointsBetweenSetsMean) {
  for (const auto& [path, meant, last] :
       {std::tuple("MaterialPackage.Timecode.StartTimecode", "MaterialPackage/Timecode.StartTimecode", "Timecode"),
        std::tuple("MaterialPackage.TimelineTrack.Sequence.Duration", "MaterialPackage/TimelineTrack/Sequence.Duration",
                   "Sequence"),
        std::tuple("Preface/MaterialPackage.Timecode.Duration", "Preface/MaterialPackage/Timecode.Duration",
                   "Timecode")}) {
    EXPECT_THAT(get({sample("op1a.mxf"), path}).err,
                EndsWith(std::string("; write ") + meant + " for the " + last + " that it leads to\n"))
        << path;
  }
  EXPECT_THAT(get({sample("op1a.mxf"), "MaterialPackage.Nothing.StartTimecode"}).err,
              testing::Not(testing::HasSubstr("; write ")));
}

TEST(Get, NamesFilesWhereThereAreSeveral) {
  const auto a = sample("op1a.mxf"), b = sample("gst-audio-ac3.mxf");
  const auto result = get({"-p", "Preface.FormatVersion", a, b});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_THAT(result.out, AllOf(StartsWith(a + ": 1."), HasSubstr("\n" + b + ": 1.")));
  const auto bare = get({"-p", "Preface.FormatVersion", a, b, "--no-names"});
  EXPECT_THAT(bare.out, testing::MatchesRegex("1\\.[23]\n1\\.[23]\n"));
  EXPECT_EQ(get({"-p", "Preface.FormatVersion", a}).out, found("Preface.FormatVersion"));
}

TEST(Get, NamesPropertiesOnDemand) {
  const auto file = sample("bmx-as02-as02b.mxf");
  EXPECT_EQ(get({file, "Timecode.FramesPerSecond", "--with-names"}).out, "Timecode.FramesPerSecond: 25\n");
  EXPECT_THAT(get({file, "Timecode[*].FramesPerSecond", "--with-names"}).out,
              StartsWith("Timecode[1].FramesPerSecond: 25\nTimecode[2].FramesPerSecond: 25\n"));
  EXPECT_THAT(get({"-p", "Preface.FormatVersion", "--with-names", file, file}).out,
              StartsWith(file + ": Preface.FormatVersion: 1."));
}

TEST(Get, EndsWith1WhereAFileHasNoSuchValue) {
  const auto a = sample("op1a.mxf"), b = sample("gst-audio-ac3.mxf");
  const auto result = get({"-p", "MPEGVideoDescriptor.ImageAspectRatio", a, b});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, a + ": 4:3\n");
  EXPECT_EQ(result.err, "mxfxml: " + b + ": the partition has no set MPEGVideoDescriptor\n");
  EXPECT_EQ(get({a, "Timecode[9].FramesPerSecond"}).exitCode, 1);
  const auto missing = get({a, "Preface.Dictionary"});
  EXPECT_EQ(missing.exitCode, 1);
  EXPECT_EQ(missing.err, "mxfxml: " + a + ": there is no Preface.Dictionary: the set does not have it\n");
}

TEST(Get, PrintsWhatItFindsBesideWhatIsMissing) {
  const auto result = get({sample("op1a.mxf"), "Preface.Dictionary", "MPEGVideoDescriptor.ImageAspectRatio"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "4:3\n");
}

TEST(Get, EndsWith2ForNamesThatTheDictionaryLacks) {
  for (const auto& [path, hint] : {std::pair("Prefac.FormatVersion", "did you mean 'Preface'"),
                                   std::pair("Preface.FormatVersio", "did you mean 'FormatVersion"),
                                   std::pair("RGBADescriptor.StoredWith", "did you mean 'StoredWidth'"),
                                   std::pair("TimelineTrack[TrackI=1].EditRate", "did you mean 'TrackID'"),
                                   std::pair("TimelineTrack[TrackID=x].EditRate", "'x' is not")}) {
    const auto result = get({sample("op1a.mxf"), path});
    EXPECT_EQ(result.exitCode, 2) << path;
    EXPECT_EQ(result.out, "") << path;
    EXPECT_THAT(result.err, HasSubstr(hint)) << path;
  }
}

TEST(Get, ReportsAllMistakesAndPrintsNothingOfTheFile) {
  const auto result = get({sample("op1a.mxf"), "Prefac.X", "Preface.FormatVersion", "Preface.Y"});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 2);
}

TEST(Get, GoesOnBehindAFileThatCannotBeRead) {
  const auto b = sample("op1a.mxf");
  const auto result = get({"-p", "Preface.FormatVersion", "missing.mxf", b});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_THAT(result.out, StartsWith(b + ": 1."));
  EXPECT_THAT(result.err, HasSubstr("missing.mxf"));
}

TEST(Get, RefusesWhatIsNoProperty) {
  for (const char* path : {"Preface", ".X", "Preface.", "Preface.FormatVersion=1"}) {
    const auto result = get({sample("op1a.mxf"), path});
    EXPECT_EQ(result.exitCode, 2) << path;
    EXPECT_THAT(result.err, HasSubstr("is no property; write Set.Property")) << path;
  }
  EXPECT_THAT(get({sample("op1a.mxf")}).err, HasSubstr("Set.Property is required"));
  EXPECT_THAT(get({"a.mxf", sample("op1a.mxf")}).err, HasSubstr("is a file; of several files, write -p Set.Property"));
  EXPECT_THAT(get({"-p", "Preface.FormatVersion", "a.mxf", ""}).err, HasSubstr("the file name is empty"));
}

TEST(Get, ReadsDocuments) {
  const ScratchFolder folder;
  const auto value = found("Identification.ApplicationName");
  for (const std::string format : {"xml", "json"}) {
    const auto document = folder.path("a." + format);
    ASSERT_EQ(run({"export", sample("op1a.mxf"), "--format", format, "-o", document}).exitCode, 0);
    EXPECT_EQ(get({document, "Identification.ApplicationName"}).out, value) << format;
    EXPECT_THAT(get({document, "Preface.FormatVersion", "--partition", "footer"}).err,
                HasSubstr("--partition is for MXF files"));
  }
}

TEST(Get, ReadsThePartitionThatIsChosen) {
  const auto file = sample("gst-audio-ac3.mxf");
  EXPECT_EQ(get({file, "Preface.FormatVersion", "--partition", "footer"}).exitCode, 0);
  EXPECT_THAT(get({file, "Preface.FormatVersion", "--partition", "99"}).err, HasSubstr("partition 99"));
  EXPECT_EQ(get({file, "Preface.FormatVersion", "--partition", "99"}).exitCode, 2);
}

TEST(Get, KnowsWhatTheFileDefinesOfItsOwn) {
  const auto file = sample("libmxf-writeaviddv50.header.mxf");
  EXPECT_EQ(get({file, "CDCIDescriptor.ResolutionID"}).exitCode, 0);
  EXPECT_EQ(get({file, "CDCIDescriptor.ResolutionID", "--no-own-dictionary"}).exitCode, 2);
}

TEST(Get, DescribesValuesAsJSON) {
  const auto result = get({"--json", sample("op1a.mxf"), "TimelineTrack[*].EditRate"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(memberOf(result, 1, "path"), "\"TimelineTrack[2]\"");
  EXPECT_EQ(memberOf(result, 1, "property"), "\"EditRate\"");
  EXPECT_THAT(memberOf(result, 1, "value"), HasSubstr("\"denominator\":1"));
  const auto file = JSON::fromText(result.out).find("files")->items()->at(0);
  EXPECT_EQ(JSON::toLine(*file.find("partition")), "\"header\"");
}

TEST(Get, DescribesEachSetWhereAllHaveOneValue) {
  const auto result = get({"--json", sample("bmx-as02-as02b.mxf"), "Timecode.FramesPerSecond"});
  EXPECT_EQ(memberOf(result, 0, "path"), "\"Timecode[1]\"");
  EXPECT_EQ(memberOf(result, 1, "path"), "\"Timecode[2]\"");
}

TEST(Get, DescribesTroubleInPlaceOfValues) {
  const auto result = get({"--json", "-p", "Preface.Dictionary", sample("op1a.mxf"), "missing.mxf"});
  EXPECT_EQ(result.exitCode, 2);
  const auto json = JSON::fromText(result.out);
  EXPECT_EQ(JSON::toLine(*json.find("files")->items()->at(0).find("values")), "[]");
  EXPECT_THAT(JSON::toLine(*json.find("files")->items()->at(1).find("problem")), HasSubstr("missing.mxf"));
}

/// A value that `get` prints is one that `set` takes, in a shell.
TEST(Get, PrintsWhatSetTakes) {
  const ScratchFolder folder;
  const auto a = folder.path("a.mxf"), b = folder.path("b.mxf");
  std::filesystem::copy_file(sample("gst-audio-ac3.mxf"), b);
  for (const std::string text : {"two\nlines\n", "\"quoted\"", "\"begun", " spaces ", "0x[41]", "@file", "\xC3\xA4\t",
                                 "", "... (5 octets)", "\"a\"... (5 octets)", "\\u000A"}) {
    std::filesystem::copy_file(sample("gst-audio-ac3.mxf"), a, std::filesystem::copy_options::overwrite_existing);
    const JSON::Value values = JSON::Value::object().add("Identification.ApplicationName", text);
    writeFile(folder.path("values.json"), JSON::toText(values));
    ASSERT_EQ(run({"set", a, "--from", folder.path("values.json")}).exitCode, 0) << text;
    auto line = get({a, "Identification.ApplicationName"}).out;
    ASSERT_EQ(std::count(line.begin(), line.end(), '\n'), 1) << text;
    line.pop_back();
    const auto result = run({"set", b, "Identification.ApplicationName=" + line});
    ASSERT_EQ(result.exitCode, 0) << text << result.err;
    const auto copied = get({"--json", b, "Identification.ApplicationName"});
    EXPECT_EQ(memberOf(copied, 0, "value"), JSON::toLine(JSON::Value(text)));
  }
}

}  // namespace
}  // namespace Vantor::Tool
