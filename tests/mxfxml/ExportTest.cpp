#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMLSParser.hpp>

#include "ChangedSample.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/Types/UUID.h"
#include "Edit.h"
#include "Program.h"
#include "ScratchFolder.h"
#include "XMLBuilder.h"
#include "XMLUtils/DomToBuffer.h"
#include "XMLUtils/LoadDocument.h"
#include "tests/Sanitized.h"

namespace Vantor::Tool {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using XMLUtils::EncodingType;

constexpr bool kNested = true;
constexpr bool kBeside = false;

struct Options {
  bool nestStrongReferences = kNested;
  bool excludeNonStructural = false;
  EncodingType encoding = EncodingType::kUTF8Indented;
  MXF::PartitionChoice partition = {};
};

/// What the libraries make of a file, to the letter.
std::string exported(const std::string& path, const Options& options = {}) {
  const auto metadata = MXF::readHeaderMetadata(path, builtInDictionary(), options.partition);
  const auto document =
      XMLBuilder::partition2XML(metadata.get(), options.nestStrongReferences, options.excludeNonStructural);
  std::string bytes;
  XMLUtils::domToBytes(document.get(), bytes, options.encoding);
  return bytes;
}

void expectOutput(const std::vector<std::string>& arguments, const std::string& xml) {
  const Result result = run(arguments);
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(withoutDescription(result.out), xml);
}

void expectFailure(const std::vector<std::string>& arguments, const std::string& message) {
  const Result result = run(arguments);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "mxfxml: " + arguments[1] + ": " + message + "\n");
}

std::string keyBytes(const wstring& dotted) {
  const Types::UUID octets(dotted, kDottedForm);
  return std::string(reinterpret_cast<const char*>(octets.rawBuffer()), 16);
}

const wstring kPrefaceKey = u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2F.00";
const wstring kOtherKey = u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.FE.00";

TEST(Export, WritesIndentedUTF8FromThePrefaceByDefault) {
  const Result result = run({"export", sample("op1a.mxf")});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, StartsWith(R"(<?xml version="1.0" encoding="UTF-8"?>
<?mxfxml form="nested" sets="all" partition="header" vocabulary="legacy" metadata="031F122CD3E7BE73"?>
<s377m:MetadataSets xmlns:)"));
  EXPECT_THAT(result.out, HasSubstr(R"(
  <s377m:Preface rp210:InstanceUID="AD.AB.44.24.2F.25.4D.C7.92.FF.00.0B.00.00.00.00">
)"));
  EXPECT_THAT(result.out, HasSubstr(R"(
    <rp210:ContentStorageObject>
      <s377m:ContentStorage rp210:InstanceUID="AD.AB.44.24.2F.25.4D.C7.92.FF.00.0D.00.00.00.00">
)"));
  EXPECT_EQ(withoutDescription(result.out), exported(sample("op1a.mxf")));
}

TEST(Export, DescribesItselfInALineBeforeTheRoot) {
  const std::string digest = R"( metadata="AF6121A8B38DEAA9"?>)";
  for (const auto& [options, fields] : std::vector<std::pair<std::vector<std::string>, std::string>>{
           {{}, R"(form="nested" sets="all" partition="header" vocabulary="legacy")"},
           {{"--flat"}, R"(form="flat" sets="all" partition="header" vocabulary="legacy")"},
           {{"--structural-only"}, R"(form="nested" sets="structural" partition="header" vocabulary="legacy")"},
           {{"--partition", "footer"}, R"(form="nested" sets="all" partition="footer" vocabulary="legacy")"},
           {{"--partition", "2"}, R"(form="nested" sets="all" partition="2" vocabulary="legacy")"},
           {{"--partition", "0"}, R"(form="nested" sets="all" partition="0" vocabulary="legacy")"},
           {{"--vocabulary", "st434-2014"}, R"(form="nested" sets="all" partition="header" vocabulary="st434-2014")"},
           {{"--start", "MaterialPackage"},
            R"(form="nested" sets="all" start="urn:uuid:41b31af9-95f2-4b72-aec8-965daca545e7" partition="header" )"
            R"(vocabulary="legacy")"}}) {
    std::vector<std::string> arguments = {"export", sample("gst-audio-ac3.mxf")};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const std::string xml = run(arguments).out;
    const auto line = xml.find('\n') + 1;
    EXPECT_EQ(xml.substr(line, xml.find('\n', line) - line), "<?mxfxml " + fields + digest);
  }
}

TEST(Export, DoesNotDescribeItselfInTheExactForm) {
  EXPECT_EQ(run({"export", sample("op1a.mxf"), "--exact"}).out, exported(sample("op1a.mxf")));
  EXPECT_EQ(run({"export", sample("bmx-op1a-adm.header.mxf"), "--exact"}).out,
            exported(sample("bmx-op1a-adm.header.mxf")));
}

/// Of dark groups, which the letter of the nested form leaves empty.
TEST(Export, HasThePointersThatTheExactFormHides) {
  const std::string input = sample("bmx-op1a-adm.header.mxf");
  EXPECT_THAT(exported(input), AllOf(HasSubstr("<rp210:SubDescriptors/>"), Not(HasSubstr("<s377m:Dangling_REF "))));
  EXPECT_THAT(run({"export", input}).out,
              AllOf(HasSubstr("<s377m:Dangling_REF types:TargetInstance=\"8A.E2.A7.0F.15.96.4C.03.88.09.45.B2.A7.A3.1C."
                              "8E\"/>"),
                    Not(HasSubstr("<rp210:SubDescriptors/>"))));
}

TEST(Export, WritesSetsBesideEachOtherWhenFlat) {
  const Result result = run({"export", sample("op1a.mxf"), "--flat"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, HasSubstr("\n  <s377m:ContentStorage rp210:InstanceUID="));
  EXPECT_THAT(result.out, HasSubstr("<s377m:ContentStorage_REF "));
  EXPECT_EQ(withoutDescription(result.out), exported(sample("op1a.mxf"), {kBeside}));
}

TEST(Export, LeavesOutOtherThanStructuralSetsOnRequest) {
  const std::string input = sample("libmxf-writeaviddv50.header.mxf");
  for (const bool nested : {kNested, kBeside}) {
    std::vector<std::string> arguments = {"export", input, "--structural-only"};
    if (!nested) arguments.emplace_back("--flat");
    expectOutput(arguments, exported(input, {nested, true}));
  }
  EXPECT_NE(exported(input, {kNested, true}), exported(input, {kNested, false}));
}

TEST(Export, WritesUTF16WithAByteOrderMark) {
  const Result result = run({"export", sample("op1a.mxf"), "--encoding", "utf-16"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out.substr(0, 6), std::string("\xFF\xFE<\0?\0", 6));
  const auto parser = XMLUtils::createParser();
  const auto* document =
      XMLUtils::loadDocumentFromBuffer(reinterpret_cast<const uint8*>(result.out.data()), result.out.size(), *parser);
  std::string readBack;
  XMLUtils::domToBytes(document, readBack, EncodingType::kUTF8Indented);
  EXPECT_EQ(withoutDescription(readBack), exported(sample("op1a.mxf")));
}

TEST(Export, TakesUTF8AsTheNameOfTheDefault) {
  expectOutput({"export", sample("op1a.mxf"), "--encoding", "utf-8"}, exported(sample("op1a.mxf")));
}

TEST(Export, ReadsTheChosenPartition) {
  // The header's "Material package" stays, the footer's is renamed.
  const ChangedSample renamed("gst-audio-ac3.mxf", std::string("\0M\0a\0t\0e", 8), std::string("\0C\0o\0o\0k", 8));
  const std::string input = renamed.path();
  const auto partition = MXF::PartitionChoice::footer();
  const std::string footer = exported(input, {kNested, false, EncodingType::kUTF8Indented, partition});
  EXPECT_THAT(footer, HasSubstr("<rp210:PackageName>Cookrial package</rp210:PackageName>"));
  EXPECT_THAT(exported(input), HasSubstr("<rp210:PackageName>Material package</rp210:PackageName>"));
  expectOutput({"export", input, "--partition", "footer"}, footer);
  expectOutput({"export", input, "--partition", "2"}, footer);
  expectOutput({"export", input, "--partition", "header"}, exported(input));
  expectOutput({"export", input, "--partition", "0"}, exported(input));
  expectOutput({"export", input}, exported(input));
}

TEST(Export, NamesThePartitionThatIsNotThere) {
  const std::string input = sample("gst-audio-ac3.mxf");
  expectFailure({"export", input, "--partition", "1"}, "at byte offset 3553: the partition has no header metadata");
  expectFailure({"export", input, "--partition", "3"}, "the file has no partition 3, only 3, counted from 0");
  expectFailure({"export", sample("ffmpeg-mpeg2-pipe-unfinished.mxf"), "--partition", "9"},
                "the file has no partition 9, only 3, counted from 0");
}

TEST(Export, StartsFromTheSetWithAnInstanceUID) {
  for (const char* text :
       {"AD.AB.44.24.2F.25.4D.C7.92.FF.00.04.00.00.00.00", "ad.ab.44.24.2f.25.4d.c7.92.ff.00.04.00.00.00.00",
        "urn:uuid:adab4424-2f25-4dc7-92ff-000400000000", "adab4424-2f25-4dc7-92ff-000400000000",
        "ADAB4424-2F25-4DC7-92FF-000400000000"}) {
    const Result result = run({"export", sample("op1a.mxf"), "--start", text});
    EXPECT_EQ(result.exitCode, 0) << text;
    EXPECT_THAT(result.out, HasSubstr(R"(>
  <s377m:Timecode rp210:InstanceUID="AD.AB.44.24.2F.25.4D.C7.92.FF.00.04.00.00.00.00">
)")) << text;
  }
}

TEST(Export, StartsFromASetByItsNumber) {
  const Result result = run({"export", sample("op1a.mxf"), "--start", "TimelineTrack[1]"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, HasSubstr(R"(>
  <s377m:TimelineTrack rp210:InstanceUID="AD.AB.44.24.2F.25.4D.C7.92.FF.00.09.00.00.00.00">
    <rp210:TrackID>1</rp210:TrackID>
)"));
}

TEST(Export, StartsFromANumberedOneOfSeveralSetsWithOneInstanceUID) {
  const ChangedSample twins("op1a.mxf", keyBytes(u"AD.AB.44.24.2F.25.4D.C7.92.FF.00.09.00.00.00.01"),
                            keyBytes(u"AD.AB.44.24.2F.25.4D.C7.92.FF.00.09.00.00.00.00"));
  const std::string id = "adab4424-2f25-4dc7-92ff-000900000000";
  const Result result = run({"export", twins.path(), "--start", id + "[1]"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, HasSubstr(R"(>
  <s377m:TimelineTrack rp210:InstanceUID="AD.AB.44.24.2F.25.4D.C7.92.FF.00.09.00.00.00.00">
    <rp210:TrackID>1</rp210:TrackID>
)"));
}

TEST(Export, NamesTheStartThatIsNotThere) {
  const std::string input = sample("op1a.mxf");
  expectFailure({"export", input, "--start", "Dance"}, "the dictionary has no set 'Dance'");
  expectFailure({"export", input, "--start", "timecode"},
                "the dictionary has no set 'timecode' (did you mean 'Timecode (TimecodeComponent)'?)");
  expectFailure({"export", input, "--start", ""}, "the dictionary has no set ''");
  expectFailure({"export", input, "--start", "00000000-0000-4000-8000-000000000000"},
                "the partition has no set with the identifier 00000000-0000-4000-8000-000000000000");
  expectFailure({"export", input, "--start", "TimelineTrack[9]"},
                "there is no TimelineTrack[9]: the partition has 6 of these sets");
  EXPECT_THAT(run({"export", input, "--start", "TimelineTrack"}).err,
              HasSubstr(": TimelineTrack is ambiguous: 6 sets (see \"mxfxml info --sets\"); use TimelineTrack[1] ("));
  for (const char* start : {"TimelineTrack", "TimelineTrack[*]"}) {
    EXPECT_THAT(run({"export", input, "--start", start}).err,
                testing::AllOf(HasSubstr("use TimelineTrack[1] ("), testing::EndsWith(", or another one\n")))
        << start;
  }
}

TEST(Export, StartsFromASetThatTheDictionaryDoesNotKnow) {
  const ChangedSample dark("op1a.mxf", keyBytes(kPrefaceKey), keyBytes(kOtherKey));
  const Result result = run({"export", dark.path(), "--start", "AD.AB.44.24.2F.25.4D.C7.92.FF.00.0B.00.00.00.00"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out,
              HasSubstr(" groups:Key=\"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.FE.00\">3C0A0010ADAB4424"));
}

TEST(Export, SaysThatAPartitionHasNoPreface) {
  const ChangedSample headless("op1a.mxf", keyBytes(kPrefaceKey), keyBytes(kOtherKey));
  expectFailure({"export", headless.path()}, "the header partition has no Preface to start from");
  EXPECT_EQ(run({"export", headless.path(), "--start", "Identification"}).exitCode, 0);
}

TEST(Export, TellsWhereAFileStopsBeingMXF) {
  const ScratchFolder folder;
  const std::string whole = readFile(sample("op1a.mxf"));
  writeFile(folder.path("cut.mxf"), whole.substr(0, 3000));
  expectFailure({"export", folder.path("cut.mxf")},
                "at byte offset 2997: expected 92 bytes of set ContentStorage, found 3 to the end of the file; 2 whole "
                "sets stand before it; mxfxml export --salvage writes what is whole");
  writeFile(folder.path("text.mxf"), "Dear Sir or Madam");
  expectFailure({"export", folder.path("text.mxf")},
                "this is no MXF file: no partition pack among its first 65,536 bytes");
  writeFile(folder.path("empty.mxf"), "");
  expectFailure({"export", folder.path("empty.mxf")},
                "this is no MXF file: no partition pack among its first 65,536 bytes");
}

TEST(Export, TellsWhyAFileCannotBeRead) {
  const ScratchFolder folder;
  const std::string missing = folder.path("missing.mxf");
  EXPECT_EQ(run({"export", missing}).err, "mxfxml: cannot open '" + missing + "': No such file or directory\n");
  EXPECT_EQ(run({"export", folder.path().string()}).err,
            "mxfxml: cannot read '" + folder.path().string() + "': Is a directory\n");
}

TEST(Export, ReportsAFileNameWithoutWhatATerminalObeys) {
  const Result result = run({"export",
                             "a\xC2\x9B"
                             "31m\xE2\x80\xAE"});
  EXPECT_EQ(result.err, "mxfxml: cannot open 'a\\u009B31m\\u202E': No such file or directory\n");
}

TEST(Export, ReportsAFileNameWithControlCharactersOnOneLine) {
  const Result result = run({"export", "no\nsuch\x1b[31mfile"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err, "mxfxml: cannot open 'no\\u000Asuch\\u001B[31mfile': No such file or directory\n");
}

TEST(Export, TakesFileNamesOutsideASCII) {
  const ScratchFolder folder;
  const std::string input = folder.path("Übung 実験 🎞.mxf");
  const std::string output = folder.path("Ergebnis – 結果.xml");
  writeFile(input, readFile(sample("op1a.mxf")));
  const Result result = run({"export", input, "-o", output});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(withoutDescription(readFile(output)), exported(sample("op1a.mxf")));
}

TEST(Export, TakesFileNamesThatLookLikeOptionsOrSubcommands) {
  const ScratchFolder folder;
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());
  for (const char* name : {"-dash.mxf", "info", "export"}) {
    writeFile(name, readFile(sample("op1a.mxf")));
    const Result result = run({"export", "--flat", "--", name});
    EXPECT_EQ(result.exitCode, 0) << name << result.err;
  }
  EXPECT_EQ(run({"export", "info"}).exitCode, 0);
  std::filesystem::current_path(before);
}

TEST(Export, ReportsThatThereIsNotEnoughMemory) {
  if (isSanitized()) GTEST_SKIP() << "a sanitizer reserves more address space than any limit leaves";
  const ScratchFolder folder;
  std::string start = readFile(sample("op1a.mxf")).substr(0, 3000);
  const auto preface = start.find(keyBytes(kPrefaceKey));
  constexpr std::uintmax_t kValueSize = 900'000'000;
  start = start.substr(0, preface) + keyBytes(kOtherKey) + std::string("\x84\x35\xA4\xE9\x00", 5);
  writeFile(folder.path("large.mxf"), start);
  std::filesystem::resize_file(folder.path("large.mxf"), start.size() + kValueSize);
  const Result result = runLimited("ulimit -v 600000", {"export", folder.path("large.mxf")});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err, "mxfxml: " + folder.path("large.mxf") + ": there is not enough memory\n");
}

}  // namespace
}  // namespace Vantor::Tool
