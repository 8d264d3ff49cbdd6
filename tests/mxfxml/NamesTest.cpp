#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "Core/DataIO/File.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Core/Types/UniversalLabel.h"
#include "Definitions/DictionaryText.h"
#include "Edit.h"
#include "Program.h"
#include "ScratchFolder.h"
#include "tests/CommonNameRows.h"

namespace Vantor::Tool {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kFourTracks = "gst-audio-ac3.mxf";

/// A copy of the sample with four tracks, to edit.
class NamedFile {
 public:
  NamedFile() { std::filesystem::copy_file(sample(kFourTracks), path()); }
  std::string path() const { return folder_.path("a.mxf"); }
  Result set(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"set", path()});
    return run(arguments);
  }
  std::string refusal(const std::string& assignment) const {
    const Result result = set({assignment});
    EXPECT_EQ(result.exitCode, 1) << assignment;
    const std::string start = "mxfxml: " + path() + ": ";
    EXPECT_THAT(result.err, StartsWith(start));
    return result.err.substr(std::min(start.size(), result.err.size()));
  }
  std::string diff() const { return run({"diff", sample(kFourTracks), path()}).out; }

 private:
  ScratchFolder folder_;
};

TEST(Names, MayBeCommonOnes) {
  const NamedFile file;
  const Result result = file.set({"Identification.CompanyName=Acme", "TimecodeComponent[1].RoundedTimecodeBase=24",
                                  "GenericPackage[2].Name=Master", "--ignore", "timecode-rate"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_THAT(file.diff(), AllOf(HasSubstr(": ApplicationSupplierName (CompanyName): "),
                                 HasSubstr(": FramesPerSecond (RoundedTimecodeBase): "), HasSubstr("PackageName")));
}

TEST(Names, ChooseTheLastOrAllSets) {
  const NamedFile file;
  EXPECT_EQ(file.set({"TimelineTrack[-1].TrackName=Last"}).exitCode, 0);
  EXPECT_EQ(file.set({"Track[*].TrackName=All"}).out,
            "4 sets changed (4 properties); written to 2 partitions, which repeat each other\n");
  EXPECT_EQ(file.set({"Track[*].TrackName=All"}).out, "nothing is edited\n");
  EXPECT_EQ(file.refusal("EventTrack[*].TrackName=x"), "the partition has no set EventTrack\n");
}

TEST(Names, ChooseSetsByAValueOrAPath) {
  const NamedFile file;
  EXPECT_EQ(file.set({"MaterialPackage/TimelineTrack[TrackID=2].TrackName=a.b=c"}).exitCode, 0);
  EXPECT_THAT(file.diff(), HasSubstr("\"a.b=c\""));
  EXPECT_EQ(file.set({"TimelineTrack[TrackName=a.b=c].TrackName=d"}).exitCode, 0);
  EXPECT_THAT(file.diff(), AllOf(HasSubstr("-> \"d\""), Not(HasSubstr("a.b=c"))));
  EXPECT_EQ(file.set({"MaterialPackage/Timecode.StartTimecode=90000"}).exitCode, 0);
  EXPECT_THAT(file.diff(), HasSubstr(": StartTimecode: 00:00:00:00 -> 00:07:58:136\n"));
}

TEST(Names, ChooseSetsByTheBeginningOfAnInstanceUID) {
  const NamedFile file;
  EXPECT_EQ(file.set({"8d9dadd1.Origin=9"}).exitCode, 0);
  EXPECT_EQ(file.set({"TimelineTrack.TrackID=9", "--start", "8D.9D.AD"}).exitCode, 0);
  EXPECT_THAT(file.diff(), AllOf(HasSubstr(": Origin: 0 -> 9\n"), HasSubstr(": TrackID: 2 -> 9\n")));
}

TEST(Names, AreSuggestedWhereThereIsNoneSuch) {
  const NamedFile file;
  EXPECT_EQ(file.refusal("Identificaton.CompanyName=x"),
            "the dictionary has no set 'Identificaton' (did you mean 'Identification'?)\n");
  EXPECT_THAT(
      file.refusal("Identification.CompnyName=x"),
      testing::EndsWith(" has no property 'CompnyName' (did you mean 'ApplicationSupplierName (CompanyName)'?)\n"));
  EXPECT_THAT(file.refusal("Identification.Company=x"),
              testing::EndsWith("(did you mean 'ApplicationSupplierName (CompanyName)'?)\n"));
  const Result result = run({"export", sample(kFourTracks), "--start", "Timecod"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err, "mxfxml: " + sample(kFourTracks) +
                            ": the dictionary has no set 'Timecod' (did you mean 'Timecode (TimecodeComponent)'?)\n");
}

TEST(Names, StandBesideOneAnotherInMessages) {
  const NamedFile file;
  EXPECT_THAT(file.refusal("TimecodeComponent[1].RoundedTimecodeBase=x"),
              StartsWith("FramesPerSecond (RoundedTimecodeBase) of Timecode "));
  EXPECT_THAT(file.refusal("Timecode[1].FramesPerSecond=x"),
              StartsWith("FramesPerSecond (RoundedTimecodeBase) of Timecode "));
  EXPECT_EQ(file.set({"--remove", "Identification.Platform", "--ignore", "required-property"}).exitCode, 0);
  EXPECT_THAT(file.set({"--remove", "Identification.Platform"}).err,
              testing::EndsWith(" has no ApplicationPlatform (Platform) to remove\n"));
}

TEST(Names, OfOtherProgramsSuggestProperties) {
  const NamedFile file;
  for (const auto& [assignment, expected] : std::vector<std::pair<std::string, std::string>>{
           {"MaterialPackage.UMID=x", "'PackageID (PackageUID)'"},
           {"Identification.product_version=x",
            "'ApplicationVersionString (VersionString)' or 'ApplicationVersion "
            "(ProductVersion)'"},
           {"MaterialPackage.material_package_name=x", "'PackageName (Name)'"},
           {"TimelineTrack[1].FrameRate=x", "'EditRate'"},
           {"TimelineTrack[1].ID=x", "'InstanceID', 'LinkedGenerationID' or 'TrackID'"},
           {"Preface.OP=x", "'OperationalPattern'"},
           {"Timecode[1].StartTC=x", "'StartTimecode'"},
           {"Identification.Comapny=x", "'ApplicationSupplierName (CompanyName)'"},
           {"SoundDescriptor.Channels=x", "'ChannelCount'"},
           {"SoundDescriptor.BitDepth=x", "'QuantizationBits'"},
           {"FilePackage.Name=x", "'SourcePackage'"}}) {
    EXPECT_THAT(file.refusal(assignment), HasSubstr("(did you mean " + expected + "?)")) << assignment;
  }
}

TEST(Names, AndConditionsAreOfTheFileBeforeTheEdits) {
  const NamedFile file;
  const Result result = file.set({"TimelineTrack[2].TrackID=7", "TimelineTrack[TrackID=2][1].TrackName=First",
                                  "TimelineTrack[TrackID=2][2].TrackName=Second", "TimelineTrack[1].TrackID=9"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_THAT(run({"info", file.path(), "--sets"}).out,
              AllOf(HasSubstr("TrackID 9, TrackName \"First\""), HasSubstr("TrackID 7, TrackName \"Second\"")));
}

TEST(Names, AreAllReportedWhereTheyAreWrong) {
  const NamedFile file;
  const Result result = file.set({"Prefce.ByteOrder=1", "TimelineTrack[1].TrackName=x", "Preface.ByteOrder=y",
                                  "TimelineTrack[9].TrackID=1", "TimelineTrack[*].TrackID=z"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 4) << result.err;
  EXPECT_THAT(result.err,
              AllOf(HasSubstr("'Prefce'"), HasSubstr("'y'"), HasSubstr("TimelineTrack[9]"), HasSubstr("'z'")));
  EXPECT_EQ(file.diff().find("TrackName"), std::string::npos) << "nothing is edited";
}

TEST(Names, OfACommonKindChooseSetsThatCanHaveTheProperty) {
  const NamedFile file;
  EXPECT_EQ(file.set({"Track[1].EditRate=48000/256"}).exitCode, 0);
  EXPECT_EQ(file.set({"MaterialPackage/Component.StartTimecode=7"}).exitCode, 0) << "of its components the Timecode";
}

TEST(Names, MayBePastedAsTheyArePrinted) {
  const NamedFile file;
  EXPECT_EQ(file.set({"Timecode[1] (TimecodeComponent).StartTimecode=7"}).exitCode, 0);
  EXPECT_EQ(file.set({"Identification.ApplicationSupplierName (CompanyName)=Acme"}).exitCode, 0);
  EXPECT_THAT(file.diff(), AllOf(HasSubstr("StartTimecode"), HasSubstr("\"Acme\"")));
}

TEST(Names, OfTheFilesOwnDictionaryAreHintedAt) {
  const std::string file = sample("libmxf-writeaviddv50.header.mxf");
  const Result result = run({"export", file, "--start", "NoSuchSet"});
  EXPECT_THAT(result.err, Not(HasSubstr("--own-dictionary")));
}

TEST(Names, AreNotLookedForInAFileThatCannotBeEdited) {
  const ScratchFolder folder;
  std::filesystem::copy_file(sample("libmxf-writeaviddv50.header.mxf"), folder.path("a.mxf"));
  const Result result = run({"set", folder.path("a.mxf"), "Prefce.ByteOrder=1"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, AllOf(Not(HasSubstr("Prefce")), HasSubstr("--force changes such a file in place")));
}

/// A file with a set of every kind in the table, the track of ST 377-1 before other tracks.
void writeEveryKind(const std::vector<CommonNameRow>& rows, const std::string& path) {
  PartitionMetadata metadata(builtInDictionary());
  auto& preface = metadata.createMetadataSet("Preface");
  preface.set("OperationalPattern", u"06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00");
  metadata.createMetadataSet("TimelineTrack");
  std::set<std::string> made;
  for (const auto& row : rows) {
    if (made.insert(row.setKey).second) metadata.createMetadataSet(MetaMetadata::registerKey(row.setKey));
  }
  DataIO::File::AtomicFile file(path);
  MXF::writeHeaderOnlyFile(metadata, MXF::SetOrder::kFile, file);
  file.commit();
}

/// The rows whose sets the dictionary has, but for what the file needs: the InstanceUID and the OperationalPattern.
std::vector<CommonNameRow> removableRows() {
  std::vector<CommonNameRow> rows;
  for (const auto& row : commonNameRows()) {
    const bool isKnown = builtInDictionary()->findSet(MetaMetadata::registerKey(row.setKey)) != nullptr;
    if (isKnown && row.property != "InstanceUID" && row.property != "OperationalPattern") rows.push_back(row);
  }
  return rows;
}

TEST(Names, OfTheTableOfCommonNamesFindTheirPropertiesInSet) {
  const auto rows = removableRows();
  if (rows.empty()) GTEST_SKIP() << "the table is not beside the repository";
  const ScratchFolder folder;
  writeEveryKind(rows, folder.path("a.mxf"));
  std::vector<std::string> command = {"set", folder.path("a.mxf"), "--dry-run"};
  for (const auto& row : rows) {
    command.insert(command.end(), {"--remove", row.set + "[1]." + row.property});
  }
  const Result result = run(command);
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.out, "nothing is edited\n");
  std::istringstream lines(result.err);
  std::string line;
  for (const auto& row : rows) {
    ASSERT_TRUE(std::getline(lines, line)) << row.set << "." << row.property;
    const bool isTagName = row.property == "GenerationUID";
    EXPECT_THAT(line,
                HasSubstr(" has no " + (isTagName || row.propertySymbol.empty() ? row.property : row.propertySymbol)));
    EXPECT_THAT(line, HasSubstr(row.property)) << row.set;
  }
  EXPECT_FALSE(std::getline(lines, line)) << line;
}

TEST(Names, OfTheTableOfCommonNamesFindTheirPropertiesInDictionary) {
  const auto rows = removableRows();
  if (rows.empty()) GTEST_SKIP() << "the table is not beside the repository";
  const auto definitions = builtInDefinitions();
  for (const auto& row : rows) {
    const auto* property = definitions.findProperty(Types::UniversalLabel(MetaMetadata::registerKey(row.propertyKey)));
    ASSERT_NE(property, nullptr) << row.property;
    const auto key = MetaMetadata::registerText(property->key.key());
    EXPECT_THAT(descriptionOf(definitions, row.property), HasSubstr("\n  key              " + key + "\n"))
        << row.property;
    EXPECT_THAT(descriptionOf(definitions, row.set), HasSubstr("set ")) << row.set;
  }
}

}  // namespace
}  // namespace Vantor::Tool
