#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "Edit.h"
#include "JSON/Text.h"
#include "JSONSchema.h"
#include "tests/SampleFiles.h"
#include "tests/Sanitized.h"

namespace Vantor::Tool {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kJSONSample = "gst-audio-ac3.mxf";

/// An export of a sample, in a file that tests may change.
class Exported {
 public:
  explicit Exported(const std::string& name = kJSONSample) : original(sample(name)) {
    text = run({"export", original, "--format", "json"}).out;
    save();
  }
  void replace(const std::string& from, const std::string& to) {
    const auto at = text.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    text.replace(at, from.size(), to);
    save();
  }

  ScratchFolder folder;
  std::string original;
  std::string text;
  std::string json = folder.path("a.json");
  std::string output = folder.path("b.mxf");

 private:
  void save() const { writeFile(json, text); }
};

JSON::Value objectOf(const Result& result) { return JSON::fromText(result.out); }

std::string lineOf(const JSON::Value& object, const char* member) {
  const auto* value = object.find(member);
  return value == nullptr ? "nothing" : JSON::toLine(*value);
}

TEST(JSONCommand, ExportsWithTheOptionThatOtherCommandsHave) {
  EXPECT_EQ(run({"export", "--json", sample("op1a.mxf")}).out,
            run({"export", "--format", "json", sample("op1a.mxf")}).out);
  EXPECT_EQ(run({"export", "--json", "--format", "xml", sample("op1a.mxf")}).exitCode, 2);
}

TEST(JSONCommand, ImportsWhatItExports) {
  const Exported exported;
  const Result result = run({"import", exported.json, "-o", exported.output});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, "");
  const std::string xml = exported.folder.path("a.xml"), fromXML = exported.folder.path("c.mxf");
  ASSERT_EQ(run({"export", exported.original, "-o", xml}).exitCode, 0);
  ASSERT_EQ(run({"import", xml, "-o", fromXML}).exitCode, 0);
  EXPECT_EQ(readFile(exported.output), readFile(fromXML));
}

TEST(JSONCommand, WritesTheSameToAFile) {
  const Exported exported;
  const std::string file = exported.folder.path("b.json");
  ASSERT_EQ(run({"export", exported.original, "--format", "json", "-o", file}).exitCode, 0);
  EXPECT_EQ(readFile(file), exported.text);
}

TEST(JSONCommand, PutsNothingBackWhereNothingWasEdited) {
  const Exported exported;
  const Result result = run({"import", exported.json, "--into", exported.original, "-o", exported.output});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(readFile(exported.output), readFile(exported.original));
}

TEST(JSONCommand, PutsAnEditBackIntoTheFile) {
  Exported exported;
  exported.replace("\"GStreamer Multimedia", "\"Ed Multimedia");
  const Result result = run({"import", exported.json, "--into", exported.original, "-o", exported.output, "--only"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  const auto diff = run({"diff", exported.original, exported.output}).out;
  EXPECT_THAT(diff, HasSubstr(": ApplicationName (ProductName): "));
  EXPECT_THAT(diff, EndsWith("different 1\n"));
}

TEST(JSONCommand, ExportsAPartWithStart) {
  const Exported exported;
  const std::string part = exported.folder.path("part.json"), flat = exported.folder.path("part.xml");
  ASSERT_EQ(run({"export", exported.original, "--format", "json", "--start", "MaterialPackage", "-o", part}).exitCode,
            0);
  ASSERT_EQ(run({"export", exported.original, "--flat", "--start", "MaterialPackage", "-o", flat}).exitCode, 0);
  EXPECT_THAT(readFile(part), HasSubstr("\"start\": \""));
  EXPECT_THAT(readFile(part), Not(HasSubstr("\"set\": \"SourcePackage\"")));
  EXPECT_EQ(run({"diff", part, flat}).exitCode, 0) << run({"diff", part, flat}).out;
}

TEST(JSONCommand, ExportsAllSetsWithThePrefaceAsStart) {
  const Exported exported;
  EXPECT_EQ(run({"export", exported.original, "--format", "json", "--start", "Preface"}).out, exported.text);
}

TEST(JSONCommand, KeepsTheOtherSetsWhenAPartIsPutBack) {
  Exported exported;
  exported.text = run({"export", exported.original, "--format", "json", "--start", "Identification"}).out;
  exported.replace("\"GStreamer Multimedia", "\"Ed Multimedia");
  const Result result = run({"import", exported.json, "--into", exported.original, "-o", exported.output, "--only"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_THAT(run({"diff", exported.original, exported.output}).out, EndsWith("different 1\n"));
}

TEST(JSONCommand, RefusesAPartOfASetThatTheFileDoesNotHave) {
  Exported exported;
  exported.text = run({"export", exported.original, "--format", "json", "--start", "Identification"}).out;
  const auto at = exported.text.find("\"start\": \"") + 10;
  exported.replace(exported.text.substr(at, 11), "FF.FF.FF.FF");
  const Result result = run({"import", exported.json, "--into", exported.original, "-o", exported.output});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("the document starts from a set that the file does not have: FF.FF.FF.FF"));
}

TEST(JSONCommand, WarnsWhenTheFileHasChangedSinceTheExport) {
  Exported exported;
  exported.replace("\"metadata\": \"", "\"metadata\": \"0000000000000000\", \"x\": \"");
  EXPECT_THAT(run({"import", exported.json, "--into", exported.original, "-o", exported.output}).err,
              HasSubstr("/description: there is no member \"x\" here"));
  Exported changed;
  const auto at = changed.text.find("\"metadata\": \"") + 13;
  changed.replace(changed.text.substr(at, 16), "0123456789ABCDEF");
  EXPECT_THAT(run({"import", changed.json, "--into", changed.original, "-o", changed.output}).err,
              HasSubstr("warning: the file has changed since the document was exported"));
}

TEST(JSONCommand, RefusesTwoSetsWithOneInstanceUID) {
  Exported exported;
  const auto at = exported.text.find("    {\n      \"set\": \"Identification\"");
  const auto end = exported.text.find("    {\n      \"set\"", at + 1);
  exported.replace(exported.text.substr(at, end - at),
                   exported.text.substr(at, end - at) + exported.text.substr(at, end - at));
  const Result result = run({"import", exported.json, "--into", exported.original, "-o", exported.output});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("the Identification and the Identification of the document have one InstanceUID"));
}

TEST(JSONCommand, WritesNothingOfADocumentThatIsWrong) {
  for (const auto& [from, to] :
       {std::pair("\"version\": 1,", "\"version\": 1"), std::pair("\"Preface\"", "\"Prefaces\""),
        std::pair("\"set\": \"Identification\"", "\"set\": 1")}) {
    Exported exported;
    exported.replace(from, to);
    const Result result = run({"import", exported.json, "-o", exported.output});
    EXPECT_EQ(result.exitCode, 1) << from;
    EXPECT_THAT(result.err, StartsWith("mxfxml: " + exported.json + ": line ")) << from;
    EXPECT_THAT(exported.folder.files(), testing::ElementsAre("a.json")) << from;
  }
}

TEST(JSONCommand, TakesTheFormatThatIsGiven) {
  const Exported exported;
  EXPECT_THAT(run({"import", exported.json, "--format", "xml", "-o", exported.output}).err, HasSubstr("XML"));
  EXPECT_EQ(run({"import", exported.json, "--format", "json", "-o", exported.output}).exitCode, 0);
  EXPECT_THAT(run({"import", exported.original, "--format", "json", "-o", exported.output}).err,
              HasSubstr("line 1, column 1: "));
}

TEST(JSONCommand, RefusesOptionsForXML) {
  const Exported exported;
  for (const char* option : {"--flat", "--exact", "--structural-only"}) {
    const Result result = run({"export", exported.original, "--format", "json", option});
    EXPECT_EQ(result.exitCode, 2) << option;
    EXPECT_THAT(result.err, HasSubstr("are for XML")) << option;
  }
  EXPECT_THAT(run({"import", exported.json, "-o", exported.output, "--exact"}).err, HasSubstr("--exact is for XML"));
}

TEST(JSONCommand, WarnsOfALabelThatTheDictionaryDoesNotKnow) {
  Exported exported;
  exported.replace("\"label\": \"MXFOP1a", "\"label\": \"MXFOP1q");
  const Result result = run({"import", exported.json, "-o", exported.output});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.err, testing::MatchesRegex("mxfxml: [^\n]*/a\\.json: warning: line [0-9]+: "
                                                "/sets/[0-9]+/properties/OperationalPattern/label: Preface [^\n]*"
                                                "unknown label 'MXFOP1q[^\n]*'; using the value, MXFOP1a[^\n]*\n"));
  EXPECT_EQ(run({"import", exported.json, "-o", exported.folder.path("c.mxf"), "--strict"}).exitCode, 1);
  EXPECT_THAT(exported.folder.files(), testing::ElementsAre("a.json", "b.mxf"));
}

TEST(JSONCommand, PutsNoUnknownLabelBackUnlessItKeepsGoing) {
  Exported exported;
  exported.replace("\"label\": \"MXFOP1a", "\"label\": \"MXFOP1q");
  const std::vector<std::string> command = {"import",          exported.json, "--into",
                                            exported.original, "-o",          exported.output};
  const Result result = run(command);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err,
              EndsWith("1 thing is wrong with the document; nothing is written; --keep-going writes the rest\n"));
  EXPECT_THAT(exported.folder.files(), testing::ElementsAre("a.json"));
  auto going = command;
  going.push_back("--keep-going");
  EXPECT_EQ(run(going).exitCode, 1);
  EXPECT_EQ(readFile(exported.output), readFile(exported.original));
}

TEST(JSONCommand, WarnsOfASetWithoutInstanceUID) {
  Exported exported;
  exported.replace("\"sets\": [", "\"sets\": [{\"set\": \"Identification\", \"properties\": {}},");
  const Result result = run({"import", exported.json, "-o", exported.output});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.err, HasSubstr(": /sets/0: Identification: the set has no \"instanceUID\", so that no reference"));
}

/// Of importing a JSON export, with more such sets, into its file, whose Identification has no InstanceUID.
std::string messagesOfSetsWithoutInstanceUID(std::size_t added) {
  const ScratchFolder folder;
  auto bytes = readFile(sample(kJSONSample));
  const std::string item("\x3C\x0A\0\x10\x85\x43", 6), other("\x3C\x7F\0\x10\x85\x43", 6);
  for (auto at = bytes.find(item); at != bytes.npos; at = bytes.find(item, at)) bytes.replace(at, item.size(), other);
  writeFile(folder.path("a.mxf"), bytes);
  auto json = run({"export", folder.path("a.mxf"), "--format", "json"}).out;
  const std::string list = "\"sets\": [";
  for (std::size_t i = 0; i < added; ++i) {
    json.insert(json.find(list) + list.size(), "{\"set\": \"Identification\", \"properties\": {}},");
  }
  writeFile(folder.path("a.json"), json);
  const auto result = run(
      {"import", folder.path("a.json"), "--into", folder.path("a.mxf"), "-o", folder.path("b.mxf"), "--keep-going"});
  return result.err;
}

TEST(JSONCommand, CountsTheSetsWithoutInstanceUIDThatTheFileLacks) {
  EXPECT_THAT(messagesOfSetsWithoutInstanceUID(0), Not(HasSubstr("instanceUID")));
  EXPECT_THAT(messagesOfSetsWithoutInstanceUID(1),
              HasSubstr(": /sets: Identification: 2 sets have no \"instanceUID\", in the file only 1; no reference"));
  EXPECT_THAT(messagesOfSetsWithoutInstanceUID(4),
              HasSubstr(": /sets: Identification: 5 sets have no \"instanceUID\", in the file only 1; no reference"));
}

/// A file that is no document, and what messages call it.
TEST(JSONCommand, NamesWhatIsNoDocument) {
  const ScratchFolder folder;
  const std::string file = folder.path("a.json");
  for (const auto& [content, text] : std::vector<std::pair<std::string, std::string>>{
           {"", "the file is empty"},
           {" \n", "the file has only white space"},
           {"null", "the file begins with 'null'"},
           {std::string("{\0\n\0", 4), "this is text in UTF-16, and no XML; JSON is read in UTF-8"},
           {"\x89PNG\r\n\x1A\n", "this is a binary file"},
           {std::string(300, '\0'), "this is a binary file"},
           {"no\x7F\x1Cthing", "this is a binary file"},
           {"no\x7Fthing", "the file begins with 'no\\u007Fthing'"},
           {"\u201CCrossing\u201D\u201D\u201D", "the file begins with '\u201CCrossing\u201D'"},
           {readFile(sample(kJSONSample)), "this is an MXF file"}}) {
    writeFile(file, content);
    const auto message = "mxfxml: " + file + ": " + text + "; metadata in XML begin with '<', in JSON with '{'\n";
    EXPECT_EQ(run({"import", file, "-o", folder.path("b.mxf")}).err, message);
    EXPECT_EQ(run({"import", file, "--into", sample(kJSONSample), "-o", folder.path("b.mxf")}).err, message);
  }
}

TEST(JSONCommand, ComparesDocuments) {
  Exported exported;
  EXPECT_EQ(run({"diff", exported.json, exported.original}).exitCode, 0);
  exported.replace("\"GStreamer Multimedia", "\"Ed Multimedia");
  EXPECT_EQ(run({"diff", exported.json, exported.original}).exitCode, 1);
}

TEST(JSONCommand, ReadsDefinitionsThatTheDocumentHasOfItsOwn) {
  const ScratchFolder folder;
  const std::string original = sample("libmxf-writeaviddv50.header.mxf"), json = folder.path("a.json");
  ASSERT_EQ(run({"export", original, "--format", "json", "--own-dictionary", "-o", json}).exitCode, 0);
  EXPECT_THAT(readFile(json), HasSubstr("\"ResolutionID\""));
  EXPECT_EQ(run({"diff", original, json}).exitCode, 0);
  EXPECT_EQ(run({"import", json, "--own-dictionary", "-o", folder.path("b.mxf")}).exitCode, 0);
  EXPECT_EQ(run({"diff", original, folder.path("b.mxf")}).exitCode, 0);
}

TEST(JSONCommand, PrintsAllNamesThatTheDictionaryLacks) {
  const ScratchFolder folder;
  const std::string json = folder.path("a.json");
  ASSERT_EQ(
      run({"export", sample("libmxf-writeaviddv50.header.mxf"), "--format", "json", "--own-dictionary", "-o", json})
          .exitCode,
      0);
  const Result result = run({"import", json, "-o", folder.path("b.mxf")});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("/properties/ResolutionID: CDCIDescriptor "));
  EXPECT_THAT(result.err, EndsWith("--own-dictionary and --dictionary FILE add definitions\n"));
  EXPECT_THAT(folder.files(), testing::ElementsAre("a.json"));
}

TEST(JSONCommand, DescribesDifferences) {
  Exported exported;
  exported.replace("\"GStreamer Multimedia", "\"Ed Multimedia");
  const Result result = run({"diff", exported.original, exported.json, "--json"});
  EXPECT_EQ(result.exitCode, 1);
  const auto object = objectOf(result);
  EXPECT_EQ(lineOf(object, "format"), "\"mxfxml-diff\"");
  EXPECT_EQ(lineOf(object, "equal"), "false");
  EXPECT_EQ(lineOf(object, "identifiers"), "[]");
  const auto& difference = object.find("differences")->items()->at(0);
  EXPECT_EQ(lineOf(difference, "kind"), "\"value\"");
  EXPECT_EQ(lineOf(difference, "set"), "\"Identification\"");
  EXPECT_THAT(lineOf(difference, "right"), StartsWith("\"\\\"Ed "));
  EXPECT_THAT(lineOf(difference, "leftValue"), StartsWith("\"GStreamer Multimedia"));
  EXPECT_THAT(lineOf(difference, "rightValue"), StartsWith("\"Ed Multimedia"));
}

TEST(JSONCommand, GivesTheValuesOfDifferencesTheFormOfAnExport) {
  Exported exported;
  const auto at = exported.text.find("\"StartTimecode\": {");
  exported.replace(exported.text.substr(at, exported.text.find('}', at) + 1 - at), "\"StartTimecode\": 25");
  const auto object = objectOf(run({"diff", exported.json, exported.original, "--json"}));
  const auto& difference = object.find("differences")->items()->at(0);
  EXPECT_EQ(*difference.find("leftValue")->find("value")->integer(), 25);
  EXPECT_NE(difference.find("leftValue")->find("text"), nullptr);
  EXPECT_EQ(lineOf(difference, "property"), "\"StartTimecode\"");
}

TEST(JSONCommand, GivesNoValueOfAPropertyThatIsNotThere) {
  Exported exported;
  const auto at = exported.text.find("\"ApplicationName\": \"GStreamer");
  exported.replace(exported.text.substr(at, exported.text.find('\n', at) + 1 - at), "");
  const auto object = objectOf(run({"diff", exported.original, exported.json, "--json"}));
  const auto& difference = object.find("differences")->items()->at(0);
  EXPECT_EQ(lineOf(difference, "kind"), "\"missing property\"");
  EXPECT_THAT(lineOf(difference, "leftValue"), StartsWith("\"GStreamer"));
  EXPECT_EQ(lineOf(difference, "rightValue"), "nothing");
}

TEST(JSONCommand, VerifiesAPartition) {
  const Result result = run({"verify", sample(kJSONSample), "--json"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(lineOf(objectOf(result), "equal"), "true");
  EXPECT_EQ(lineOf(objectOf(result), "form"), "\"lossless\"");
}

TEST(JSONCommand, ListsFindingsByFile) {
  const Result result = run({"check", sample(kJSONSample), "missing.mxf", "--json"});
  EXPECT_EQ(result.exitCode, 2);
  const auto object = objectOf(result);
  const auto& files = *object.find("files")->items();
  ASSERT_EQ(files.size(), 2u);
  const auto& findings = *files[0].find("findings")->items();
  const auto ofSet = std::find_if(findings.begin(), findings.end(),
                                  [](const JSON::Value& finding) { return finding.find("instanceUID") != nullptr; });
  ASSERT_NE(ofSet, findings.end());
  EXPECT_EQ(ofSet->find("set")->text()->find(' '), std::string::npos);
  EXPECT_EQ(ofSet->find("instanceUID")->text()->size(), 47u);
  EXPECT_THAT(lineOf(files[1], "problem"), HasSubstr("missing.mxf"));
}

TEST(JSONCommand, PrintsDefinitions) {
  const auto entries = objectOf(run({"dictionary", "EditRate", "--json"}));
  const auto& property = entries.find("entries")->items()->at(0);
  EXPECT_EQ(lineOf(property, "property"), "\"EditRate\"");
  EXPECT_EQ(lineOf(property, "type"), "\"Rational\"");
  EXPECT_GT(objectOf(run({"dictionary", "--json"})).find("sets")->items()->size(), 100u);
  EXPECT_GT(objectOf(run({"dictionary", "aspect", "--json"})).find("matches")->items()->size(), 1u);
}

/// A process takes long to start under a sanitizer.
std::vector<Path> samplesToDescribe() { return isSanitized() ? mxfFilesIn(Path(VANTOR_TEST_DATA_DIR)) : sampleFiles(); }

/// The documents that every command makes of every sample, in a folder.
std::vector<std::string> documentsIn(const ScratchFolder& folder) {
  std::vector<std::vector<std::string>> commands = {{"check", "--rules", "--json"}, {"dictionary", "--json"}};
  for (const char* name :
       {"Preface", "EditRate", "LayoutType", "aspect", "MXFOP1aSingleItemSinglePackageUniTrackStreamInternal"}) {
    commands.push_back({"dictionary", name, "--json"});
  }
  for (const auto& path : samplesToDescribe()) {
    const auto file = path.string();
    commands.push_back({"export", file, "--format", "json"});
    commands.push_back({"verify", file, "--json"});
    commands.push_back({"check", file, "--json"});
    commands.push_back({"diff", file, sample("op1a.mxf"), "--json"});
    commands.push_back({"info", file, "--json"});
    commands.push_back({"get", file, "--json", "Preface.OperationalPattern", "TimelineTrack[*].EditRate",
                        "Timecode[*].StartTimecode", "FileDescriptor[*].SampleRate",
                        "Identification[*].ProductVersion"});
  }
  std::vector<std::string> files;
  for (const auto& command : commands) {
    files.push_back(folder.path(std::to_string(files.size()) + ".json"));
    writeFile(files.back(), run(command).out);
  }
  return files;
}

TEST_F(JSONSchema, DescribesWhatTheProgramPrints) {
  const int exitCode = validate(documentsIn(folder));
  if (isMissing) GTEST_SKIP() << "python3-jsonschema is missing";
  EXPECT_EQ(exitCode, 0) << readFile(folder.path("problems"));
}

TEST_F(JSONSchema, DescribesFilesWithTrouble) {
  const std::vector<std::vector<std::string>> commands = {{"info", "--json", "missing.mxf"},
                                                          {"get", "--json", "missing.mxf", "Preface.FormatVersion"},
                                                          {"get", "--json", sample("op1a.mxf"), "Preface.Dictionary"}};
  std::vector<std::string> files;
  for (const auto& command : commands) {
    files.push_back(folder.path(std::to_string(files.size()) + ".json"));
    writeFile(files.back(), run(command).out);
  }
  const int exitCode = validate(files);
  if (isMissing) GTEST_SKIP() << "python3-jsonschema is missing";
  EXPECT_EQ(exitCode, 0) << readFile(folder.path("problems"));
}

TEST_F(JSONSchema, DescribesNothingElse) {
  Exported exported;
  exported.replace("\"TrackID\": ", "\"TrackID\": 0.5, \"x\": ");
  const int exitCode = validate({exported.json});
  if (isMissing) GTEST_SKIP() << "python3-jsonschema is missing";
  EXPECT_EQ(exitCode, 1);
  EXPECT_THAT(readFile(folder.path("problems")), HasSubstr("0.5"));
}

}  // namespace
}  // namespace Vantor::Tool
