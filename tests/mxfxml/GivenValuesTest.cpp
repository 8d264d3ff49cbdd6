#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "JSON/Text.h"
#include "Program.h"
#include "ScratchFolder.h"
#include "tests/SampleFiles.h"
#include "tests/Sanitized.h"

/// `mxfxml set --from`: values that a JSON document gives.
namespace Vantor::Tool {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::StartsWith;

/// A copy of a sample, and a document with values for it.
class GivenValues : public testing::Test {
 protected:
  GivenValues() { copy("gst-audio-ac3.mxf"); }

  void copy(const std::string& name) const {
    fs::copy_file(sample(name), file(), fs::copy_options::overwrite_existing);
  }
  std::string file() const { return folder_.path("b.mxf"); }
  std::string document() const { return folder_.path("values.json"); }

  Result set(const std::string& json, std::vector<std::string> options = {}) const {
    writeFile(document(), json);
    options.insert(options.begin(), {"set", file(), "--from", document()});
    return run(options);
  }
  std::string value(const std::string& path) const { return run({"get", file(), path}).out; }

  /// A document with one value, as `get --json` prints it.
  static std::string given(const std::string& path, const std::string& property, const std::string& members) {
    return R"({"format": "mxfxml-get", "version": 1, "files": [{"file": "a.mxf", "values": [{"path": ")" + path +
           R"(", "property": ")" + property + "\", " + members + "}]}]}";
  }

  void expectRefusal(const std::string& json, const std::string& message) const {
    const auto before = readFile(file());
    const auto result = set(json);
    EXPECT_EQ(result.exitCode, 1) << json;
    EXPECT_THAT(result.err, HasSubstr(document() + ": " + message)) << json;
    EXPECT_TRUE(readFile(file()) == before) << json;
  }

  ScratchFolder folder_;
};

TEST_F(GivenValues, AreThoseOfAnObject) {
  const auto result = set(R"({"Identification.CompanyName": "Ed", "MaterialPackage.Name": "Episode 3"})");
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(value("Identification.ApplicationSupplierName"), "Ed\n");
  EXPECT_EQ(value("MaterialPackage.PackageName"), "Episode 3\n");
}

TEST_F(GivenValues, HaveTheFormsOfExportsAndThoseOfPeople) {
  copy("op1a.mxf");
  for (const auto& [json, text] :
       {std::pair(R"("16:9")", "16:9\n"), std::pair(R"({"numerator": 4, "denominator": 3})", "4:3\n"),
        std::pair(R"({"octets": "0000001000000009"})", "16:9\n"), std::pair(R"("0x[0000000400000003]")", "4:3\n")}) {
    const auto result = set(std::string(R"({"MPEGVideoDescriptor.ImageAspectRatio": )") + json + "}", {"--only"});
    EXPECT_EQ(result.exitCode, 0) << json << result.err;
    EXPECT_EQ(value("MPEGVideoDescriptor.ImageAspectRatio"), text) << json;
  }
}

TEST_F(GivenValues, OfTextPropertiesAreTheTextAsItIs) {
  for (const auto& [json, text] :
       {std::pair(R"("\"Ed\"")", "\"\\\"Ed\\\"\"\n"), std::pair(R"("@file")", "@file\n"),
        std::pair(R"("0x[41]")", "\"0x[41]\"\n"), std::pair(R"("a\nb")", "\"a\\u000Ab\"\n")}) {
    EXPECT_EQ(set(std::string(R"({"Identification.CompanyName": )") + json + "}").exitCode, 0) << json;
    EXPECT_EQ(value("Identification.CompanyName"), text) << json;
  }
}

TEST_F(GivenValues, InOctetsAreNothingElseForTextPropertiesToo) {
  const std::string name = R"({"Identification.CompanyName": {"octets": )";
  EXPECT_EQ(set(name + R"("00450064", "text": "Ed"}})").exitCode, 0);
  EXPECT_EQ(value("Identification.CompanyName"), "Ed\n");
  for (const std::string octets : {"zz", "004", "] x", "0045] x", "0x0045"}) {
    expectRefusal(name + "\"" + octets + "\"}}",
                  "line 1: /Identification.CompanyName: \"octets\" are hexadecimal digits, two to an octet");
  }
  expectRefusal(name + R"("0045", "comment": "E"}})",
                "line 1: /Identification.CompanyName: there is no member \"comment\" here");
  expectRefusal(name + "69}}", "line 1: /Identification.CompanyName/octets: it is a number, not a text");
}

TEST_F(GivenValues, AreRefusedWithTheLineOfANumberBeyondAll) {
  expectRefusal("{\n\"TimelineTrack[1].TrackID\": 1e999}", "line 2, column ");
  EXPECT_THAT(set("{\"TimelineTrack[1].TrackID\": 1e999}").err,
              testing::AllOf(HasSubstr(": the number 1e999 is too large"), testing::Not(HasSubstr("exception"))));
}

TEST_F(GivenValues, OfAnotherFileAreThoseOfItsSetsByNumber) {
  copy("op1a.mxf");
  const auto values = folder_.path("values.json");
  ASSERT_EQ(run({"set", file(), "TimelineTrack[1].TrackName=one", "TimelineTrack[2].TrackName=two"}).exitCode, 0);
  const auto json = run({"get", "--json", file(), "TimelineTrack[*].TrackName"}).out;
  copy("gst-audio-ac3.mxf");
  const auto result = set(json);
  const auto tracks = run({"get", file(), "TimelineTrack[*].TrackID"}).out;
  EXPECT_GE(std::count(tracks.begin(), tracks.end(), '\n'), 2);
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(value("TimelineTrack[1].TrackName"), "one\n");
  EXPECT_EQ(value("TimelineTrack[2].TrackName"), "two\n");
}

TEST_F(GivenValues, MayComeFromStandardInput) {
  writeFile(document(), R"({"Identification.CompanyName": "Ed"})");
  const auto result = runLimited("exec <'" + document() + "'", {"set", file(), "--from", "-"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(value("Identification.CompanyName"), "Ed\n");
}

TEST_F(GivenValues, AreRefusedForASetThatTheFileLacks) {
  const auto before = readFile(file());
  const auto result = set(given("TimelineTrack[99]", "TrackName", R"("value": "x")"));
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err,
              testing::ContainsRegex("there is no TimelineTrack\\[99\\]: the partition has [0-9]+ of these sets"));
  EXPECT_TRUE(readFile(file()) == before);
}

TEST_F(GivenValues, AreTakenWithAWarningOfALabelThatTheDictionaryDoesNotKnow) {
  const auto result = set(R"({"Preface.OperationalPattern": {"value": "06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00",
"label": "MXFOP1q"}})",
                          {"--only"});
  EXPECT_THAT(result.err, HasSubstr(": warning: line 2: /Preface.OperationalPattern/label: unknown label 'MXFOP1q'; "
                                    "using the value, MXFOP1a"));
}

TEST_F(GivenValues, DecideAndTheirTextsHaveToAgree) {
  EXPECT_EQ(set(given("Timecode[1]", "StartTimecode", R"("text": "10:00:00:00")"), {"--only"}).exitCode, 0);
  EXPECT_EQ(set(given("Identification", "CompanyName", R"("value": "Ed", "text": "Ed")")).exitCode, 0);
  EXPECT_EQ(value("Identification.CompanyName"), "Ed\n");
  expectRefusal(given("Identification", "CompanyName", R"("value": "Ed", "text": "Eva")"),
                "line 1: /files/0/values/0/text: \"text\" has 'Eva', but the value is Ed; correct one, or leave "
                "\"text\" out");
  expectRefusal(given("TimelineTrack[1]", "EditRate",
                      R"("value": {"numerator": 24, "denominator": 1, "text": "25"}, "text": "24")"),
                "line 1: /files/0/values/0/value/text: \"text\" has '25', but the value is 24");
}

TEST_F(GivenValues, AreComparedWithTextsAfterAllChanges) {
  const auto json = [](const char* text) {
    return std::string(R"({"Timecode[1].StartTimecode": {"value": 108000, "text": ")") + text +
           R"("}, "Timecode[1].FramesPerSecond": 30})";
  };
  expectRefusal(json("02:00:00:00"), "line 1: /Timecode[1].StartTimecode/text: \"text\" has '02:00:00:00'");
  const auto result = set(json("01:00:00:00"), {"--only", "--ignore", "timecode-rate"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(value("Timecode[1].StartTimecode"), "01:00:00:00\n");
}

TEST_F(GivenValues, AreRefusedWithTheirPlace) {
  expectRefusal("{\"Identification.CompanyName\": \"Ed\",}", "line 1, column ");
  expectRefusal("", "line 1, column 1");
  expectRefusal("[]", "line 1");
  expectRefusal("{}", "there are no values");
  expectRefusal("{\n\"Identification.CompanyName\": null}",
                "line 2: /Identification.CompanyName: null is no value; --remove removes a property");
  expectRefusal("{\"Identification.CompanyName\": 1}",
                "line 1: /Identification.CompanyName: it is a number, not a text");
  expectRefusal("{\"Identification\": 1}",
                "line 1: /Identification: 'Identification' is no property; write Set.Property");
  expectRefusal("{\"A.B=C\": 1}", "line 1: /A.B=C: 'A.B=C' is no property");
  expectRefusal("{\"A[.B\": 1}", "line 1: /A[.B: the bracket in ");
  expectRefusal("{\"TimelineTrack[1].EditRate\": \"fast\"}", "line 1: /TimelineTrack[1].EditRate: ");
  expectRefusal("{\"TimelineTrack[1].EditRate\": {\"octets\": \"0\"}}", "line 1: /TimelineTrack[1].EditRate: ");
  expectRefusal("{\"MaterialPackage.PackageID\": \"@/etc/hostname\"}", "line 1: /MaterialPackage.PackageID: ");
  expectRefusal("{\"Preface.InstanceUID\": \"00\"}", "line 1: /Preface.InstanceUID: the InstanceUID of Preface");
  std::string deep(100, '[');
  expectRefusal("{\"Preface.FormatVersion\": " + deep, "line 1");
}

TEST_F(GivenValues, AreRefusedInADocumentOfAnotherForm) {
  expectRefusal(R"({"format": "mxfxml-metadata", "version": 1, "sets": []})",
                "the format is \"mxfxml-metadata\", not \"mxfxml-get\"");
  expectRefusal(R"({"format": "x", "version": 1, "files": []})", "the format is \"x\", not \"mxfxml-get\"");
  expectRefusal(R"({"format": "mxfxml-get", "version": 2, "files": []})",
                "line 1: /version: version 2 is not known; this program reads version 1");
  expectRefusal(R"({"format": "mxfxml-get", "version": 1, "files": []})",
                "line 1: /files: values of one file are taken, not of 0");
  expectRefusal(R"({"format": "mxfxml-get", "version": 1, "files": [{"file": "a", "problem": "gone"}]})",
                "line 1: /files/0: there are no values: gone");
  expectRefusal(R"({"format": "mxfxml-get", "version": 1, "files": [{"file": "a", "values": []}]})",
                "there are no values");
  expectRefusal(R"({"format": "mxfxml-get", "version": 1, "files": [{"file": "a", "values": [1]}]})",
                "line 1: /files/0/values/0: it is a number, not an object");
  expectRefusal(given("Preface", "FormatVersion", R"("set": "Preface")"),
                "line 1: /files/0/values/0: the member \"value\" is missing");
  expectRefusal(given("Preface", "FormatVersion", R"("values": 1)"), "line 1: /files/0/values/0: there is no member");
}

TEST_F(GivenValues, NeedAFileThatCanBeRead) {
  for (const auto& document : {folder_.path("missing.json"), folder_.path().string()}) {
    const auto result = run({"set", file(), "--from", document});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, StartsWith("mxfxml: " + document + ": "));
  }
}

TEST_F(GivenValues, GiveAPropertyOnlyOnce) {
  writeFile(document(), R"({"Identification.CompanyName": "Ed"})");
  const auto result = run({"set", file(), "Identification.ApplicationSupplierName=Eva", "--from", document()});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_THAT(result.err, HasSubstr("is given more than once"));
}

TEST_F(GivenValues, LeaveOutWhatCannotBeTakenOnDemand) {
  const auto result =
      set(R"({"Identification.CompanyName": "Ed", "TimelineTrack[1].EditRate": "fast"})", {"--keep-going"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(value("Identification.CompanyName"), "Ed\n");
}

/// Every value that `get` describes is the one that is there: nothing changes.
TEST_F(GivenValues, ChangeNothingInTheFileThatTheyAreFrom) {
  copy("op1a.mxf");
  const auto before = readFile(file());
  const std::vector<std::string> paths = {"Preface.FormatVersion",
                                          "Preface.OperationalPattern",
                                          "Preface.EssenceContainers",
                                          "Identification.ApplicationVersion",
                                          "Identification.FileModificationDate",
                                          "TimelineTrack[*].EditRate",
                                          "Timecode[*].StartTimecode",
                                          "MaterialPackage.PackageID",
                                          "MPEGVideoDescriptor.VideoLineMap",
                                          "MPEGVideoDescriptor.FrameLayout"};
  auto arguments = std::vector<std::string>{"get", "--json", file()};
  arguments.insert(arguments.end(), paths.begin(), paths.end());
  const auto json = run(arguments).out;
  const auto result = set(json);
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_TRUE(readFile(file()) == before);
}

/// The languages of one sample in a file with the same sets under other InstanceUIDs.
TEST_F(GivenValues, CopyLanguagesFromFileToFile) {
  const auto from = (Path(VANTOR_SHARED_DIR) / "samples" / "bmx-op1a-mca-properties.header.mxf").string();
  if (!fs::exists(from)) GTEST_SKIP() << "there is no " << from;
  const std::string path = "MCALabelSubDescriptor[*].RFC5646SpokenLanguage", all = "MCALabelSubDescriptor[*].";
  const auto languages = run({"get", from, path}).out;
  ASSERT_NE(languages, "");
  ASSERT_EQ(run({"export", from, "-o", folder_.path("a.xml")}).exitCode, 0);
  ASSERT_EQ(run({"import", "--exact", folder_.path("a.xml"), "-o", file()}).exitCode, 0);
  EXPECT_NE(value(all + "InstanceUID"), run({"get", from, all + "InstanceUID"}).out);
  ASSERT_EQ(run({"set", file(), "--only", "--remove", path}).exitCode, 0);
  EXPECT_EQ(value(path), "");
  const auto result = set(run({"get", "--json", from, path}).out);
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(value(path), languages);
}

/// Files of other writers have the channels in another order.
TEST_F(GivenValues, OfLabelsFollowTheirSymbol) {
  const std::string label = "AudioChannelLabelSubDescriptor";
  const auto from = folder_.path("a.mxf");
  ASSERT_EQ(run({"export", sample("bmx-op1a-mca-properties.header.mxf"), "-o", folder_.path("a.xml")}).exitCode, 0);
  for (const auto& made : {from, file()}) ASSERT_EQ(run({"import", folder_.path("a.xml"), "-o", made}).exitCode, 0);
  ASSERT_EQ(run({"set", from, label + "[MCATagSymbol=chC].RFC5646SpokenLanguage=de"}).exitCode, 0);
  for (const auto& [old, now] : {std::pair("chC", "chX"), std::pair("chLs", "chC"), std::pair("chX", "chLs")}) {
    ASSERT_EQ(run({"set", file(), label + "[MCATagSymbol=" + old + "].MCATagSymbol=" + now}).exitCode, 0);
  }
  const auto result = set(run({"get", "--json", from, label + "[*].RFC5646SpokenLanguage"}).out);
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(value(label + "[MCATagSymbol=chC].RFC5646SpokenLanguage"), "de\n");
  EXPECT_EQ(value(label + "[MCATagSymbol=chLs].RFC5646SpokenLanguage"), "");
}

TEST_F(GivenValues, NameLabelsOfOneSymbolByTheirNumberAmongThem) {
  const auto json = run({"get", "--json", sample("bmx-op1a-mca-properties.header.mxf"),
                         "AudioChannelLabelSubDescriptor[*].MCATagSymbol"})
                        .out;
  for (const char* path : {"[MCATagSymbol=chL][1]", "[MCATagSymbol=chL][2]", "[MCATagSymbol=chC]"}) {
    EXPECT_THAT(json, HasSubstr("\"path\": \"AudioChannelLabelSubDescriptor" + std::string(path) + "\""));
  }
}

TEST_F(GivenValues, AreRefusedWhereTheFileHasNoSetOfTheKind) {
  const auto result = set(given("SoundfieldGroupLabelSubDescriptor[1]", "RFC5646SpokenLanguage", R"("value": "en")"));
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("the partition has no set SoundfieldGroupLabelSubDescriptor"));
}

/// "Set[*].Property" for everything that a document has.
std::vector<std::string> pathsIn(const JSON::Value& document) {
  std::set<std::string> paths;
  for (const auto& set : *document.find("sets")->items()) {
    if (set.find("set") == nullptr) continue;
    for (const auto& property : *set.find("properties")->members()) {
      paths.insert(*set.find("set")->text() + "[*]." + property.name);
    }
  }
  return {paths.begin(), paths.end()};
}

/// "Set[2].Property=VALUE" for the values of a file, as `get --json` prints them.
std::vector<std::string> assignmentsIn(const JSON::Value& values) {
  std::vector<std::string> assignments;
  for (const auto& value : *values.find("files")->items()->front().find("values")->items()) {
    assignments.push_back(*value.find("path")->text() + "." + *value.find("property")->text() + "=" +
                          *value.find("text")->text());
  }
  return assignments;
}

std::vector<Path> samplesToCopy() { return isSanitized() ? std::vector<Path>{sample("op1a.mxf")} : sampleFiles(); }

/// All values of a file with the metadata of each sample, set there by a document and on the command line.
TEST(ValuesOfSamples, ChangeNothingWhereTheyAre) {
  const ScratchFolder folder;
  const auto exported = folder.path("a.json"), copy = folder.path("b.mxf"), document = folder.path("values.json");
  std::size_t count = 0;
  for (const auto& path : samplesToCopy()) {
    const auto original = path.string();
    ASSERT_EQ(run({"export", original, "--format", "json", "-o", exported}).exitCode, 0) << original;
    ASSERT_EQ(run({"import", exported, "-o", copy}).exitCode, 0) << original;
    const auto before = readFile(copy);
    std::vector<std::string> get = {"get", "--json", "--no-own-dictionary", copy};
    for (const auto& property : pathsIn(JSON::fromText(readFile(exported)))) get.insert(get.end(), {"-p", property});
    const auto values = run(get).out;
    writeFile(document, values);
    const auto byDocument = run({"set", copy, "--from", document});
    EXPECT_EQ(byDocument.exitCode, 0) << original << byDocument.err;
    const auto assignments = assignmentsIn(JSON::fromText(values));
    std::vector<std::string> set = {"set", copy};
    set.insert(set.end(), assignments.begin(), assignments.end());
    const auto byHand = run(set);
    EXPECT_EQ(byHand.exitCode, 0) << original << byHand.err;
    EXPECT_TRUE(readFile(copy) == before) << original;
    count += assignments.size();
  }
  EXPECT_GT(count, 100u);
}

}  // namespace
}  // namespace Vantor::Tool
