#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/DataIO/File.h"
#include "Core/DataIO/System.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Program.h"
#include "PseudoTerminal.h"
#include "ScratchFolder.h"
#include "tests/SampleFiles.h"

/// "-" in the place of a file.
namespace Vantor::Tool {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kPiped = "op1a.mxf";

/// The program's arguments, with a file at the other end of a pipe.
Result piped(const std::string& file, const std::string& arguments) {
  return runScript("cat \"$1\" | \"$0\" " + arguments, {file});
}

/// The same with standard input redirected from the file.
Result redirected(const std::string& file, const std::string& arguments) {
  return runScript("\"$0\" " + arguments + " <\"$1\"", {file});
}

class PipedSampleTest : public testing::TestWithParam<Path> {};

TEST_P(PipedSampleTest, GoesThroughPipesAsThroughFiles) {
  const ScratchFolder folder;
  const auto file = GetParam().string(), document = folder.path("a.xml"), output = folder.path("a.mxf");
  if (run({"export", file, "-o", document}).exitCode != 0) {
    EXPECT_EQ(piped(file, "export -").exitCode, 1);
    GTEST_SKIP() << "its header partition has no metadata that can be read";
  }
  ASSERT_EQ(run({"import", document, "-o", output}).exitCode, 0);
  const Result result = runScript("cat \"$1\" | \"$0\" export - | tee \"$2\" | \"$0\" import - -o - >\"$3\"",
                                  {file, folder.path("b.xml"), folder.path("b.mxf")});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_TRUE(haveSameBytes(document, folder.path("b.xml")));
  EXPECT_TRUE(haveSameBytes(output, folder.path("b.mxf")));
}

INSTANTIATE_TEST_SUITE_P(Pipe, PipedSampleTest, testing::ValuesIn(sampleFiles()),
                         [](const auto& sample) { return testNameOf(sample.param); });

TEST(Pipe, GivesJSONAsAFileDoes) {
  EXPECT_EQ(piped(sample(kPiped), "export - --format json").out,
            run({"export", sample(kPiped), "--format", "json"}).out);
  const ScratchFolder folder;
  const Result result = runScript("\"$0\" export \"$1\" --format json | \"$0\" import - -o \"$2\"",
                                  {sample(kPiped), folder.path("a.mxf")});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(run({"export", folder.path("a.mxf"), "--format", "json"}).exitCode, 0);
}

TEST(Pipe, BeginsWithARunInToo) {
  const ScratchFolder folder;
  writeFile(folder.path("a.mxf"), std::string(65535, 'x') + readFile(sample(kPiped)));
  const Result result = piped(folder.path("a.mxf"), "export -");
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.out, run({"export", sample(kPiped)}).out);
}

/// Where the header metadata of a sample end.
uint64 endOfHeader(const std::string& file) {
  DataIO::File::FileDataSource source{Path(file)};
  MXF::readHeaderMetadata(source, builtInDictionary(), MXF::PartitionChoice::header());
  return source.position();
}

TEST(Pipe, IsReadNoFurtherThanTheHeaderMetadataAndWhatIsReadAhead) {
  const ScratchFolder folder;
  const std::string bytes = readFile(sample(kPiped)) + std::string(1 << 20, 'x');
  writeFile(folder.path("a.mxf"), bytes);
  for (const char* arguments :
       {"info -", "info - --all", "export -", "export - --own-dictionary", "verify -", "show -"}) {
    const Result result = runScript(std::string("cat \"$1\" | { \"$0\" ") + arguments + " >/dev/null && wc -c; }",
                                    {folder.path("a.mxf")});
    ASSERT_EQ(result.exitCode, 0) << arguments << result.err;
    const auto taken = bytes.size() - std::stoul(result.out);
    EXPECT_LE(taken, endOfHeader(folder.path("a.mxf")) + DataIO::File::kReadAhead) << arguments;
  }
}

TEST(Pipe, NeedNotEnd) {
  const Result result = runScript("{ cat \"$1\"; yes; } | \"$0\" info -", {sample(kPiped)});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, "");
}

TEST(Pipe, HasOneSummaryButForTheFile) {
  const Result result = piped(sample(kPiped), "info -");
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_THAT(result.out, AllOf(HasSubstr("others of a pipe are not read"), Not(HasSubstr("bytes"))));
  EXPECT_EQ(piped(sample(kPiped), "info - --sets").out, run({"info", sample(kPiped), "--sets"}).out);
  EXPECT_THAT(piped(sample(kPiped), "info - --partitions").out,
              AllOf(HasSubstr("partitions: 1, the first; others of a pipe are not read"), Not(HasSubstr("size"))));
}

TEST(Pipe, HasNoSizeInJSON) {
  const auto ofPipe = piped(sample(kPiped), "info --json -"), ofFile = run({"info", "--json", sample(kPiped)});
  EXPECT_EQ(ofPipe.exitCode, 0) << ofPipe.err;
  EXPECT_THAT(ofPipe.out, AllOf(HasSubstr("\"file\": \"standard input\""), Not(HasSubstr("\"end\""))));
  const auto summaryIn = [](const Result& result) {
    const auto start = result.out.find("\"essenceContainers\"");
    return start == std::string::npos ? "no summary" : result.out.substr(start);
  };
  EXPECT_THAT(summaryIn(ofPipe), HasSubstr("\"packages\""));
  EXPECT_EQ(summaryIn(ofPipe), summaryIn(ofFile));
}

TEST(Pipe, HasItsValues) {
  EXPECT_EQ(piped(sample(kPiped), "get - Preface.OperationalPattern").out,
            run({"get", sample(kPiped), "Preface.OperationalPattern"}).out);
  EXPECT_NE(piped(sample(kPiped), "get - Preface.OperationalPattern").out, "");
}

TEST(Pipe, HasNoFooter) {
  for (const char* command : {"export", "info", "verify"}) {
    const Result result = piped(sample(kPiped), std::string(command) + " - --partition footer");
    EXPECT_NE(result.exitCode, 0);
    EXPECT_EQ(result.err,
              "mxfxml: standard input: of a pipe, only the header partition is read; write it to a file to read the "
              "footer partition\n");
  }
  EXPECT_EQ(piped(sample(kPiped), "export - --partition 0").exitCode, 0);
}

TEST(Pipe, IsNamedInMessages) {
  EXPECT_EQ(runScript("head -c 3000 \"$1\" | \"$0\" export -", {sample(kPiped)}).exitCode, 1);
  EXPECT_THAT(runScript("head -c 3000 \"$1\" | \"$0\" export -", {sample(kPiped)}).err,
              StartsWith("mxfxml: standard input: at byte offset "));
  EXPECT_EQ(runScript("echo nothing | \"$0\" info -").err,
            "mxfxml: standard input: this is no MXF file: no partition pack among its first 65,536 bytes\n");
  EXPECT_THAT(runScript("echo '<a><b></a>' | \"$0\" import - -o \"$1\"", {"/dev/null"}).err,
              StartsWith("mxfxml: standard input: not well-formed XML: line 1"));
  EXPECT_THAT(runScript("\"$0\" export - <&-").err, HasSubstr("standard input"));
}

TEST(Redirection, IsAFileWithAllItsPartitions) {
  for (const char* options : {"", " --partition footer", " --flat"}) {
    const auto file = runScript(std::string("\"$0\" export \"$1\"") + options, {sample(kPiped)});
    EXPECT_EQ(redirected(sample(kPiped), std::string("export -") + options).out, file.out) << options;
  }
  EXPECT_EQ(redirected(sample(kPiped), "info -").out, run({"info", sample(kPiped)}).out);
}

TEST(Redirection, OfAFileThatIsTheOutputIsRefused) {
  const ScratchFolder folder;
  writeFile(folder.path("a.mxf"), readFile(sample(kPiped)));
  const Result result = redirected(folder.path("a.mxf"), "export - -o \"$1\"");
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("is the input itself"));
  EXPECT_EQ(readFile(folder.path("a.mxf")), readFile(sample(kPiped)));
}

TEST(Pipe, BringsDocumentsInEveryEncoding) {
  const ScratchFolder folder;
  const std::string made = folder.path("made.mxf"), expected = folder.path("expected.mxf"), file = sample(kPiped);
  for (const char* options : {"", " --encoding utf-16", " --exact"}) {
    const std::string exact = std::string(options) == " --exact" ? " --exact" : "";
    const Result result =
        runScript(std::string("\"$0\" export \"$1\"") + options + " >\"$2.xml\" && \"$0\" import \"$2.xml\" -o \"$3\"" +
                      exact + " && \"$0\" import - -o \"$2\"" + exact + " <\"$2.xml\"",
                  {file, made, expected});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(run({"diff", made, expected, "--ignore-ids"}).exitCode, 0) << options;
  }
}

TEST(Pipe, BringsAnEditedDocumentIntoAFile) {
  const ScratchFolder folder;
  const std::string copy = folder.path("copy.mxf");
  const Result result = runScript(
      "\"$0\" export \"$1\" | sed s/FFmpeg/Edited/ | \"$0\" import - --into \"$1\" -o \"$2\"", {sample(kPiped), copy});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_THAT(run({"diff", sample(kPiped), copy}).out, HasSubstr("Edited"));
}

TEST(Pipe, IsShownAndCompared) {
  EXPECT_EQ(runScript("\"$0\" export \"$1\" | \"$0\" show -", {sample(kPiped)}).out, run({"show", sample(kPiped)}).out);
  EXPECT_EQ(piped(sample(kPiped), "show -").out, run({"show", sample(kPiped)}).out);
  EXPECT_EQ(runScript("\"$0\" export \"$1\" | \"$0\" diff - \"$1\"", {sample(kPiped)}).exitCode, 0);
  EXPECT_EQ(runScript("\"$0\" export \"$1\" | \"$0\" diff \"$1\" -", {sample(kPiped)}).exitCode, 0);
  EXPECT_EQ(piped(sample(kPiped), "diff - \"$1\"").exitCode, 0);
  EXPECT_EQ(runScript("\"$0\" export \"$1\" --format json | \"$0\" diff - \"$1\" --json", {sample(kPiped)}).exitCode,
            0);
}

TEST(Pipe, IsOneInputOnly) {
  for (const char* arguments : {"diff - -", "info - -"}) {
    const Result result = piped(sample(kPiped), arguments);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, StartsWith("mxfxml: only one input can be -, standard input; see mxfxml "));
  }
}

TEST(Pipe, IsRefusedWhereAFileIsNeeded) {
  const std::vector<std::vector<std::string>> refused = {{"set", "-", "Preface.Version=1"},
                                                         {"set", sample(kPiped), "Preface.Version=1", "-o", "-"},
                                                         {"check", "-"},
                                                         {"undo", "-"},
                                                         {"recover", "-"},
                                                         {"import", sample("op1a.mxf"), "--into", "-", "--in-place"},
                                                         {"export", sample(kPiped), "--dictionary", "-"}};
  for (const auto& arguments : refused) {
    const Result result = run(arguments);
    EXPECT_EQ(result.exitCode, 2) << arguments[0];
    EXPECT_THAT(result.err, HasSubstr("'-', a standard stream, is not possible here")) << arguments[0];
  }
  const Result result = run({"import", "-", "--into", sample(kPiped), "-o", "-"});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_THAT(result.err, HasSubstr("--into needs the name of a file"));
}

TEST(Dash, WithAFolderIsAFile) {
  const ScratchFolder folder;
  writeFile(folder.path("-"), readFile(sample(kPiped)));
  writeFile(folder.path("standard input"), readFile(sample(kPiped)));
  const auto expected = run({"export", sample(kPiped)}).out;
  EXPECT_EQ(runScript("cd \"$1\" && \"$0\" export ./-", {folder.path().string()}).out, expected);
  EXPECT_EQ(runScript("cd \"$1\" && \"$0\" export 'standard input'", {folder.path().string()}).out, expected);
}

TEST(Dash, IsStandardOutputForDocuments) {
  EXPECT_EQ(run({"export", sample(kPiped), "-o", "-"}).out, run({"export", sample(kPiped)}).out);
  const Result json = run({"export", sample(kPiped), "--format", "json", "--output", "-"});
  EXPECT_EQ(json.out, run({"export", sample(kPiped), "--format", "json"}).out);
}

TEST(Dash, PrintsNoMXFOnATerminal) {
  const ScratchFolder folder;
  ASSERT_EQ(run({"export", sample(kPiped), "-o", folder.path("a.xml")}).exitCode, 0);
  PseudoTerminal terminal({"import", folder.path("a.xml"), "-o", "-"});
  const Result result = terminal.finish();
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_THAT(result.out, HasSubstr("an MXF file is not for a terminal"));
}

}  // namespace
}  // namespace Vantor::Tool
