#include <gmock/gmock.h>

#include "Edit.h"

/// Edits of documents that say something twice, and of files that do.
namespace Vantor::Tool {
namespace {

using testing::HasSubstr;

constexpr const char* kSample = "gst-audio-ac3.mxf";
const std::string kItemOfInstanceUID("\x3c\x0a\x00\x10", 4);  // local tag and length (ST 377-1)
const std::string kSequence = "\x8B\xA4\xE1\x37\x37\x4E\x42\xEB\x9E\x4D\xA4\x6E\x41\x69\xC5\xDD";
const std::string kOtherSequence = "\xFC\x1A\xAE\xAC\xDE\x38\x4E\xA6\x85\xC5\x8A\x73\x06\x23\x40\xB0";
const std::string kTimecode = "\x74\xD2\x7B\x52\xF8\x46\x48\x4F\x83\x9C\x02\x4A\x10\x9C\x37\x4D";

/// The sample in which a set has the InstanceUID of a sequence.
class WithSharedIdentifier : public ScratchFolder {
 public:
  explicit WithSharedIdentifier(const std::string& set) {
    std::string bytes = readFile(sample(kSample));
    const std::string from = kItemOfInstanceUID + set, to = kItemOfInstanceUID + kSequence;
    for (auto at = bytes.find(from); at != std::string::npos; at = bytes.find(from)) bytes.replace(at, to.size(), to);
    writeFile(file(), bytes);
  }
  std::string file() const { return path("shared.mxf"); }
};

std::string unknown(const std::string& mark, const std::string& octets) {
  return "<groups:ExtensionElements xmlns:groups='urn:SMPTE:Groups:MXF'><groups:DarkElement groups:" + mark + ">" +
         octets + "</groups:DarkElement></groups:ExtensionElements>";
}

TEST(EditedTwice, KeepsAPropertyThatIsGivenAgainAsAnUnknownOne) {
  const std::string octets(32, 'A');
  for (const auto& [mark, name] : std::vector<std::pair<std::string, std::string>>{
           {"StaticLocalTag='3C.0A'", "InstanceID"},
           {"UniversalLabel='06.0E.2B.34.01.01.01.01.01.01.15.02.00.00.00.00'", "InstanceID"},
           {"StaticLocalTag='44.01'", "PackageID"}}) {
    const Edit edit(sample(kSample), {});
    edit.replace("</s377m:SourcePackage>", unknown(mark, octets) + "</s377m:SourcePackage>");
    const Result result = edit.intoCopy({"--keep-going"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "nothing is edited\n") << result.err;
    EXPECT_THAT(result.err, HasSubstr(": the set already has the property " + name + "; this one is not read\n"));
    EXPECT_EQ(readFile(edit.copy()), readFile(edit.original()));
    EXPECT_EQ(edit.intoCopy({"--strict"}).exitCode, 1);
  }
}

TEST(EditedTwice, IsNoMistakeWhereTheFileHasItSo) {
  const FileOf file([] {
    std::string xml = run({"export", sample(kSample)}).out;
    const std::string extension = unknown("StaticLocalTag='44.01'", std::string(64, 'A'));
    return xml.insert(xml.find("</s377m:SourcePackage>"), extension);
  }());
  for (const auto& form : std::vector<std::vector<std::string>>{{}, {"--flat"}}) {
    const Edit edit(file.file(), form);
    EXPECT_THAT(readFile(edit.document()), HasSubstr("StaticLocalTag=\"44.01\""));
    const Result result = edit.intoCopy({"--strict"});
    EXPECT_EQ(result.out, "nothing is edited\n") << result.err;
    EXPECT_EQ(readFile(edit.copy()), readFile(edit.original()));
    edit.replace(std::string(64, 'A'), std::string(64, 'B'));
    EXPECT_EQ(edit.intoCopy({"--strict"}).out, "1 set changed (1 property); written to 1 partition\n");
    EXPECT_THAT(edit.flat(edit.copy()), HasSubstr(std::string(64, 'B')));
  }
  EXPECT_EQ(run({"verify", file.file()}).exitCode, 0);
}

TEST(EditedTwice, KeepsAPropertyThatIsGivenAgainByName) {
  for (const auto& form : std::vector<std::vector<std::string>>{{}, {"--flat"}}) {
    const Edit edit(sample(kSample), form);
    edit.replace("<rp210:PackageTracks>", "<rp210:PackageTracks/><rp210:PackageTracks>");
    const Result result = edit.intoCopy({"--keep-going"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "nothing is edited\n") << result.err;
    EXPECT_THAT(result.err,
                HasSubstr(": PackageTracks: PackageTracks stands here a second time; only the first is read\n"));
    EXPECT_EQ(readFile(edit.copy()), readFile(edit.original()));
  }
}

TEST(EditedTwice, IsNoObstacleToEditsElsewhere) {
  const WithSharedIdentifier shared(kOtherSequence);
  const Edit edit(shared.file(), {});
  EXPECT_EQ(edit.intoCopy({"--strict"}).err, "");
  const Result set = run({"set", edit.original(), "Identification.ApplicationName=Ed", "-o", edit.copy()});
  EXPECT_EQ(set.exitCode, 0) << set.err;
  EXPECT_THAT(edit.exported(edit.copy()), HasSubstr(">Ed</rp210:ApplicationName>"));
  edit.cut("<rp210:ApplicationName>", "</rp210:ApplicationName>");
  EXPECT_THAT(edit.intoCopy(ignoring({"required-property"})).out, HasSubstr("1 set changed (1 property)"));
  EXPECT_THAT(edit.exported(edit.copy()), testing::Not(HasSubstr("rp210:ApplicationName>")));
}

TEST(EditedTwice, IsRefusedByNameWhereTwoKindsOfSetsShareAnInstanceUID) {
  const WithSharedIdentifier shared(kTimecode);
  writeFile(shared.path("a.xml"), run({"export", sample(kSample)}).out);
  const Result import = run({"import", shared.path("a.xml"), "--into", shared.file(), "-o", shared.path("b.mxf")});
  EXPECT_EQ(import.exitCode, 1);
  EXPECT_EQ(import.err, "mxfxml: " + shared.path("a.xml") + ": cannot be put into " + shared.file() +
                            ": no document of the file can be merged: the Sequence and the Timecode have one "
                            "InstanceUID, 8B.A4.E1.37.37.4E.42.EB.9E.4D.A4.6E.41.69.C5.DD\n");
}

TEST(EditedTwice, IsNoObstacleToSingleValuesWhereTwoKindsOfSetsShareAnInstanceUID) {
  const WithSharedIdentifier shared(kTimecode);
  const std::string copy = shared.path("b.mxf");
  for (const auto& assignment : {"Identification.ApplicationName=Ed", "Timecode[1].FramesPerSecond=25",
                                 "8B.A4.E1.37.37.4E.42.EB.9E.4D.A4.6E.41.69.C5.DD[2].ComponentLength=5"}) {
    const Result set = run({"set", shared.file(), assignment, "-o", copy});
    EXPECT_EQ(set.out, "1 set changed (1 property); written to 2 partitions, which repeat each other\n") << set.err;
  }
}

}  // namespace
}  // namespace Vantor::Tool
