#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>

#include "Edit.h"
#include "Program.h"
#include "ScratchFolder.h"

/// A descriptive framework that a person adds to an export, without making InstanceUIDs up.
namespace Vantor::Tool {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;
using Texts = std::vector<std::string>;

const std::string kData =
    "<rp210:ComponentDataDefinition>06.0E.2B.34.04.01.01.01.01.03.02.01.10.00.00.00</rp210:ComponentDataDefinition>";
const std::string kTexts = R"(
    <rp210:AS_11_Series_Title>Coast</rp210:AS_11_Series_Title>
    <rp210:AS_11_Programme_Title>Harbour lights</rp210:AS_11_Programme_Title>
    <rp210:AS_11_Episode_Title_Number>Two</rp210:AS_11_Episode_Title_Number>
    <rp210:AS_11_Shim_Name>UK DPP HD</rp210:AS_11_Shim_Name>
    <rp210:AS_11_Shim_Version>256</rp210:AS_11_Shim_Version>
    <rp210:AS_11_Audio_Track_Layout>2</rp210:AS_11_Audio_Track_Layout>
    <rp210:AS_11_Primary_Audio_Language>eng</rp210:AS_11_Primary_Audio_Language>
    <rp210:AS_11_Closed_Captions_Present>false</rp210:AS_11_Closed_Captions_Present>
)";

struct Framework {
  const char* track;
  std::string properties;  ///< of the track
};
const Framework kFrameworks[] = {
    {"StaticTrack",
     "<rp210:TrackID>5001</rp210:TrackID><rp210:TrackName>AS_11_Core</rp210:TrackName>"
     "<rp210:EssenceTrackNumber>0</rp210:EssenceTrackNumber>"},
    {"EventTrack",
     "<rp210:TrackID>5002</rp210:TrackID><rp210:EssenceTrackNumber>0</"
     "rp210:EssenceTrackNumber><rp210:EventTrackEditRate><types:Numerator>25</types:Numerator>"
     "<types:Denominator>1</types:Denominator></rp210:EventTrackEditRate>"}};

std::string element(const std::string& name, const std::string& content, const std::string& attributes = "") {
  return "<" + name + attributes + ">" + content + "</" + name + ">\n";
}
std::string newName(const std::string& name) { return " rp210:InstanceUID=\"new:" + name + "\""; }
std::string pointerTo(const std::string& set, const std::string& name) {
  return "<s377m:" + set + "_REF types:TargetInstance=\"new:" + name + "\"/>";
}

std::string nestedTrack(const Framework& framework) {
  const auto core = element("rp210:DescriptiveFrameworkObject", element("s377m:DM_AS_11_Core_Framework", kTexts));
  const auto marker = element("s377m:DescriptiveMarker", kData + core);
  const auto sequence = element("s377m:Sequence", kData + element("rp210:ComponentObjects", marker));
  return element(std::string("s377m:") + framework.track,
                 framework.properties + element("rp210:TrackSegment", sequence));
}

std::string flatSets(const Framework& framework) {
  const auto reference = [](const char* property, const std::string& set, const std::string& name) {
    return element(property, pointerTo(set, name));
  };
  return element(std::string("s377m:") + framework.track,
                 framework.properties + reference("rp210:TrackSegment", "Sequence", "components"), newName("track")) +
         element("s377m:Sequence", kData + reference("rp210:ComponentObjects", "DescriptiveMarker", "marker"),
                 newName("components")) +
         element("s377m:DescriptiveMarker",
                 kData + reference("rp210:DescriptiveFrameworkObject", "DM_AS_11_Core_Framework", "AS-11 core"),
                 newName("marker")) +
         element("s377m:DM_AS_11_Core_Framework", kTexts, newName("AS-11 core"));
}

Texts linesOf(const std::string& text) {
  Texts lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

Texts linesWith(const std::string& start, const std::string& text) {
  Texts lines;
  for (auto& line : linesOf(text)) {
    if (line.rfind(start, 0) == 0) lines.push_back(std::move(line));
  }
  return lines;
}

/// The name of a sample, and whether its export is nested.
class NewSets : public testing::TestWithParam<std::tuple<const char*, bool>> {
 protected:
  NewSets() : edit_(sample(std::get<0>(GetParam())), isNested() ? Texts() : Texts{"--flat"}) {}

  static bool isNested() { return std::get<1>(GetParam()); }

  /// Puts the track at the end of those of the material package.
  void add(const Framework& framework) const {
    std::string xml = readFile(edit_.document());
    const auto package = xml.find("<s377m:MaterialPackage ");
    const auto end = xml.find("</rp210:PackageTracks>", package);
    ASSERT_NE(end, std::string::npos);
    xml.insert(end, isNested() ? nestedTrack(framework) : pointerTo(framework.track, "track"));
    if (!isNested()) xml.insert(xml.rfind("</s377m:MetadataSets>"), flatSets(framework));
    writeFile(edit_.document(), xml);
  }

  /// A change of the tracks of the material package and of the list of schemes, and four sets added.
  void expectTheFrameworkAlone(const Framework& framework) const {
    const std::string diff = run({"diff", edit_.original(), edit_.copy()}).out;
    const auto added = linesWith("added set: ", diff);
    ASSERT_THAT(added, SizeIs(4)) << diff;
    EXPECT_THAT(added[0], HasSubstr(std::string("added set: ") + framework.track + " "));
    EXPECT_THAT(added[1], HasSubstr("added set: Sequence "));
    EXPECT_THAT(added[2], HasSubstr("added set: DescriptiveMarker "));
    EXPECT_THAT(added[3], HasSubstr("added set: DM_AS_11_Core_Framework "));
    const auto changed = linesWith("reference: ", diff);
    ASSERT_THAT(changed, SizeIs(1));
    EXPECT_THAT(changed[0], HasSubstr(": PackageTracks (Tracks): "));
    const auto listed = linesWith("value: Preface ", diff);
    ASSERT_THAT(listed, SizeIs(1)) << diff;
    EXPECT_THAT(listed[0], HasSubstr(": DescriptiveSchemes"));
    EXPECT_THAT(listed[0], HasSubstr("[DM_AS_11_Core]"));
    EXPECT_THAT(diff, HasSubstr(", different 6; properties compared "));
    EXPECT_THAT(diff, HasSubstr(", different 2\n"));
  }

  /// The unedited export of the edited file gives its bytes again.
  void expectToBeReadAgain() const {
    const ScratchFolder folder;
    const std::string document = folder.path("again.xml"), again = folder.path("again.mxf");
    ASSERT_EQ(run({"export", edit_.copy(), "-o", document}).exitCode, 0);
    EXPECT_EQ(run({"import", document, "--into", edit_.copy(), "-o", again}).err, "");
    EXPECT_TRUE(readFile(again) == readFile(edit_.copy()));
  }

  const Edit edit_;
};

TEST_P(NewSets, OfADescriptiveFrameworkAreAddedWithoutInstanceUIDs) {
  for (const auto& framework : kFrameworks) {
    edit_.exportAgain(isNested() ? Texts() : Texts{"--flat"});
    add(framework);
    const Result result = edit_.intoCopy();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(result.out,
                testing::StartsWith("2 sets changed (2 properties), 4 added; with it: DescriptiveSchemes of "
                                    "1 set; written to "));
    expectTheFrameworkAlone(framework);
    expectToBeReadAgain();
    const std::string xml = run({"export", edit_.copy()}).out;
    EXPECT_THAT(xml, HasSubstr("<rp210:AS_11_Programme_Title>Harbour lights</rp210:AS_11_Programme_Title>"));
  }
}

TEST_P(NewSets, GoIntoPlainFilesAsWell) {
  add(kFrameworks[0]);
  const Result result = run({"import", edit_.document(), "-o", edit_.copy()});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(run({"info", edit_.copy(), "--sets"}).out, HasSubstr("DM_AS_11_Core_Framework"));
}

/// The InstanceUIDs of the sets that a comparison names as added.
Texts addedInstanceUIDs(const std::string& diff) {
  Texts instanceUIDs;
  for (const auto& line : linesWith("added set: ", diff)) instanceUIDs.push_back(line.substr(line.rfind(' ') + 1));
  return instanceUIDs;
}

std::string replacedEverywhere(std::string text, const std::string& from, const std::string& by) {
  for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + by.size())) {
    text.replace(at, from.size(), by);
  }
  return text;
}

TEST_P(NewSets, AreAddedInTheOtherVocabularyAsWell) {
  add(kFrameworks[0]);
  ASSERT_EQ(edit_.intoCopy().exitCode, 0);
  Texts options = {"export", edit_.copy(), "--vocabulary", "st434-2014", "-o", edit_.document()};
  if (!isNested()) options.emplace_back("--flat");
  ASSERT_EQ(run(options).exitCode, 0);
  std::string xml = readFile(edit_.document());
  for (const auto& instanceUID : addedInstanceUIDs(run({"diff", edit_.original(), edit_.copy()}).out)) {
    xml = isNested() ? replacedEverywhere(xml, " rp210:InstanceUID=\"" + instanceUID + "\"", "")
                     : replacedEverywhere(xml, instanceUID, "new:" + instanceUID);
  }
  writeFile(edit_.document(), xml);
  std::filesystem::remove(edit_.copy());
  const Result result = edit_.intoCopy();
  EXPECT_EQ(result.exitCode, 0) << result.err;
  expectTheFrameworkAlone(kFrameworks[0]);
}

INSTANTIATE_TEST_SUITE_P(Files, NewSets,
                         testing::Combine(testing::Values("op1a.mxf", "bmx-op1a-timedtext.mxf", "gst-audio-ac3.mxf"),
                                          testing::Bool()),
                         [](const auto& info) {
                           const std::string name =
                               std::string(std::get<0>(info.param)) + (std::get<1>(info.param) ? "_nested" : "_flat");
                           return std::regex_replace(name, std::regex("[^A-Za-z0-9]+"), "_");
                         });

class NewSetsInGst : public testing::Test {
 protected:
  void addToTracks(const std::string& content) const {
    edit_.replace("</rp210:PackageTracks>", content + "</rp210:PackageTracks>");
  }
  const Edit edit_{sample("gst-audio-ac3.mxf"), {}};
};

TEST_F(NewSetsInGst, AreTheSameInTheFooterUnderTheSameInstanceUIDs) {
  addToTracks(nestedTrack(kFrameworks[0]));
  EXPECT_THAT(
      edit_.intoCopy().out,
      HasSubstr("4 added; with it: DescriptiveSchemes of 1 set; written to 2 partitions, which repeat each other"));
  EXPECT_EQ(edit_.exported(edit_.copy(), "footer"), edit_.exported(edit_.copy()));
  EXPECT_THAT(edit_.exported(edit_.copy(), "footer"), HasSubstr("<s377m:DM_AS_11_Core_Framework rp210:InstanceUID="));
}

TEST_F(NewSetsInGst, AreRefusedWithoutARequiredPropertyUnlessThatIsIgnored) {
  addToTracks(nestedTrack(kFrameworks[0]));
  edit_.cut("<rp210:AS_11_Closed_Captions_Present>", "</rp210:AS_11_Closed_Captions_Present>");
  const Result refused = edit_.intoCopy();
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_THAT(edit_.remarks(refused),
              testing::MatchesRegex("warning: required-property: partitions 0, 2: DM_AS_11_Core_Framework [0-9A-F.]+: "
                                    "AS_11_Closed_Captions_Present: a required property is missing\n"
                                    "the edit would break 1 rule that the file keeps; nothing is written; --ignore "
                                    "RULE permits it\n"));
  EXPECT_THAT(edit_.files(), ElementsAre("edited.xml", "original.mxf"));
  EXPECT_EQ(edit_.intoCopy(ignoring({"required-property"})).exitCode, 0);
  EXPECT_THAT(edit_.exported(edit_.copy()), testing::Not(HasSubstr("AS_11_Closed_Captions_Present")));
}

TEST_F(NewSetsInGst, AreRefusedWhereANameMeansNoSetOrTwo) {
  addToTracks("\n" + pointerTo("StaticTrack", "track") + "\n");
  const Result none = edit_.intoCopy();
  EXPECT_EQ(none.exitCode, 1);
  EXPECT_THAT(edit_.remarks(none), testing::MatchesRegex("cannot be put into ORIGINAL: line [0-9]+: no set of the "
                                                         "document is named 'new:track'\n"));
  addToTracks("<s377m:StaticTrack" + newName("track") + "/>\n<s377m:StaticTrack" + newName("track") + "/>");
  const Result two = edit_.intoCopy();
  EXPECT_EQ(two.exitCode, 1);
  EXPECT_THAT(
      edit_.remarks(two),
      testing::MatchesRegex("cannot be put into ORIGINAL: line [0-9]+: the StaticTrack is named 'new:track', as "
                            "is the StaticTrack at line [0-9]+; give one of them another name\n"));
  EXPECT_EQ(run({"import", edit_.document(), "-o", edit_.copy()}).exitCode, 1);
  EXPECT_THAT(edit_.files(), ElementsAre("edited.xml", "original.mxf"));
}

TEST_F(NewSetsInGst, AreRefusedOutsideOfReferencesWithoutAName) {
  edit_.replace("</s377m:MetadataSets>", "<s377m:Identification/></s377m:MetadataSets>");
  const Result result = edit_.intoCopy();
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(edit_.remarks(result),
            "line 235: Identification: the set has no rp210:InstanceUID; restore it, or name a new set: "
            "rp210:InstanceUID=\"new:...\"\n"
            "1 thing is wrong with the document; nothing is written; --keep-going writes the rest\n");
  EXPECT_THAT(edit_.files(), ElementsAre("edited.xml", "original.mxf"));
}

TEST_F(NewSetsInGst, TakeThePlaceOfOnesWhoseInstanceUIDWasTakenAway) {
  edit_.replace(" rp210:InstanceUID=\"74.D2.7B.52.F8.46.48.4F.83.9C.02.4A.10.9C.37.4D\"", "");
  const Result result = edit_.intoCopy();
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_THAT(result.out, HasSubstr("1 set changed (1 property), 1 added, 1 removed"));
  const Result diff = run({"diff", edit_.original(), edit_.copy(), "--ignore-ids"});
  EXPECT_EQ(diff.exitCode, 0) << diff.out;
}

}  // namespace
}  // namespace Vantor::Tool
