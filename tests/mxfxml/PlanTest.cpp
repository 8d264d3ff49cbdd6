#include <gmock/gmock.h>

#include <sys/stat.h>

#include <algorithm>
#include <regex>
#include <sstream>

#include "Edit.h"
#include "PlannedFiles.h"
#include "tests/SampleFiles.h"

/// Edits of many files by a table.
namespace Vantor::Tool {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

using PlanTest = PlannedFiles;

constexpr const char* kReportHeader = "file,path,old value,new value,state,reason\r\n";
/// The number before a word of a summary; 0 where it is not there.
std::size_t countOf(const std::string& word, const std::string& summary) {
  std::smatch match;
  return std::regex_search(summary, match, std::regex("([0-9]+) (files? )?" + word)) ? std::stoul(match[1]) : 0;
}

constexpr const char* kOldName = "GStreamer Multimedia Framework";

TEST_F(PlanTest, ShowsAndWritesTheEditsOfEachFile) {
  addFiles({"a.mxf", "b.mxf"});
  writeFile(table(),
            "file,path,value\na.mxf,Identification.ApplicationName,Ed\nb.mxf,Preface.ByteOrder,18761\n"
            "a.mxf,Timecode[*].StartTimecode,10:00:00:00\n");
  const Result result = set({"--report", path("report.csv")});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  const auto out = inFolder(result.out);
  EXPECT_THAT(out, StartsWith("FOLDER/a.mxf\n  value: Identification "));
  EXPECT_THAT(out, HasSubstr("  3 sets changed (3 properties); would be written to 2 partitions"));
  EXPECT_THAT(out, HasSubstr("FOLDER/a.mxf: written\nFOLDER/b.mxf: written\n2 files changed\n"));
  EXPECT_EQ(report(), std::string(kReportHeader) + "a.mxf,Identification.ApplicationName," + kOldName +
                          ",Ed,changed,\r\n"
                          "a.mxf,Timecode[*].StartTimecode,00:00:00:00,10:00:00:00,changed,\r\n"
                          "a.mxf,Timecode[*].StartTimecode,00:00:00:00,10:00:00:00,changed,\r\n"
                          "b.mxf,Preface.ByteOrder,,18761,changed,\r\n");
  EXPECT_TRUE(hasName("a.mxf", "Ed"));
  EXPECT_THAT(diff("b.mxf"), HasSubstr("added property: Preface"));
}

TEST_F(PlanTest, WritesNothingInADryRun) {
  addFiles({"a.mxf"});
  writeTable({"a.mxf"});
  const Result result = set({"--dry-run", "--report", path("report.csv")});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(lastLine(result.out), "1 file would be changed\n");
  EXPECT_THAT(report(), HasSubstr(",Writer of a.mxf,would be changed,\r\n"));
  EXPECT_TRUE(isUntouched("a.mxf"));
}

TEST_F(PlanTest, WritesNothingWhenARowIsRefused) {
  addFiles({"a.mxf", "b.mxf", "c.mxf"});
  writeTable({"a.mxf", "b.mxf", "missing.mxf", "c.mxf"});
  writeFile(table(), readFile(table()) + "b.mxf,TimelineTrack.TrackName,x\r\nc.mxf,TimelineTrack[1].EditRate,0/0\r\n");
  const Result result = set({"--report", path("report.csv")});
  EXPECT_EQ(result.exitCode, 1);
  const auto err = inFolder(result.err);
  EXPECT_THAT(err, HasSubstr("mxfxml: FOLDER/plan.csv: line 6, column 7: FOLDER/b.mxf: TimelineTrack is ambiguous"));
  EXPECT_THAT(err, HasSubstr("FOLDER/plan.csv: line 4, column 1: cannot open 'FOLDER/missing.mxf': No such file"));
  EXPECT_THAT(err, HasSubstr("FOLDER/plan.csv: line 5, column 1: FOLDER/c.mxf: the edit would break 1 rule"));
  EXPECT_EQ(lastLine(err),
            "mxfxml: FOLDER/plan.csv: 3 of 4 files are refused; nothing is written; --keep-going writes the others\n");
  EXPECT_EQ(lastLine(result.out), "3 files refused, 1 not reached\n");
  for (const char* name : {"a.mxf", "b.mxf", "c.mxf"}) EXPECT_TRUE(isUntouched(name)) << name;
  EXPECT_THAT(report(), HasSubstr(std::string("\r\na.mxf,Identification.ApplicationName,") + kOldName +
                                  ",Writer of a.mxf,not reached,\r\n"));
  EXPECT_THAT(report(), HasSubstr("\r\nmissing.mxf,Identification.ApplicationName,,Writer of missing.mxf,refused,"));
  EXPECT_THAT(report(), HasSubstr("\r\nb.mxf,TimelineTrack.TrackName,,x,refused,"));
}

TEST_F(PlanTest, WritesTheFilesWithoutRefusedRowsOnRequest) {
  addFiles({"a.mxf", "b.mxf"});
  writeTable({"missing.mxf", "b.mxf", "a.mxf"});
  writeFile(table(), readFile(table()) + "b.mxf,Preface.ByteOrder,x\r\n");
  const Result result = set({"--keep-going"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(lastLine(result.out), "1 file changed, 2 refused\n");
  EXPECT_EQ(lastLine(inFolder(result.err)), "mxfxml: FOLDER/plan.csv: 2 of 3 files are refused\n");
  EXPECT_TRUE(hasName("a.mxf", "Writer of a.mxf"));
  EXPECT_TRUE(isUntouched("b.mxf"));
}

TEST_F(PlanTest, LetsAnEditBreakARuleThatIsIgnored) {
  addFiles({"a.mxf"});
  writeFile(table(), "file,path,value\na.mxf,TimelineTrack[1].EditRate,0/0\n");
  EXPECT_EQ(set({"--ignore", "edit-rate"}).exitCode, 0);
  EXPECT_THAT(diff("a.mxf"), HasSubstr(": EditRate: "));
}

TEST_F(PlanTest, KeepsOldBytesOfEachFile) {
  addFiles({"a.mxf", "b.mxf"});
  writeTable({"a.mxf", "b.mxf"});
  EXPECT_EQ(set({"--keep-undo"}).exitCode, 0);
  for (const char* name : {"a.mxf", "b.mxf"}) {
    EXPECT_FALSE(isUntouched(name));
    EXPECT_EQ(run({"undo", path(name)}).exitCode, 0);
    EXPECT_TRUE(isUntouched(name));
  }
}

TEST_F(PlanTest, ForeseesInADryRunThatOldBytesCannotBeKept) {
  addFiles({"a.mxf", "b.mxf"});
  writeFile(table(), std::string("file,path,value\na.mxf,") + kName + "," + std::string(100000, 'x') + "\nb.mxf," +
                         kName + ",Ed\n");
  const Result foreseen = set({"--keep-undo", "--dry-run"}), done = set({"--keep-undo"});
  for (const auto& result : {foreseen, done}) {
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("cannot keep the old bytes of '"));
    EXPECT_THAT(result.out, HasSubstr("1 file refused, 1 not reached\n"));
  }
  EXPECT_TRUE(isUntouched("a.mxf") && isUntouched("b.mxf"));
}

TEST_F(PlanTest, TakesItsFilesBackAtOnce) {
  addFiles({"a.mxf", "b.mxf"});
  writeTable({"a.mxf", "b.mxf"});
  ASSERT_EQ(set({"--keep-undo"}).exitCode, 0);
  EXPECT_EQ(run({"undo", path("a.mxf"), path("b.mxf")}).exitCode, 0);
  EXPECT_TRUE(isUntouched("a.mxf") && isUntouched("b.mxf"));
}

TEST_F(PlanTest, WritesCopiesIntoAFolder) {
  addFiles({"a.mxf", "b.mxf"});
  writeTable({"a.mxf", "b.mxf"});
  const Result result = set({"-o", path("out")});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_TRUE(hasName("out/a.mxf", "Writer of a.mxf") && hasName("out/b.mxf", "Writer of b.mxf"));
  EXPECT_TRUE(isUntouched("a.mxf") && isUntouched("b.mxf"));
}

TEST_F(PlanTest, RefusesCopiesWithOneNameAndCopiesOverItsFiles) {
  fs::create_directory(path("m"));
  addFiles({"a.mxf", "m/a.mxf"});
  writeTable({"a.mxf", "m/a.mxf"});
  const Result same = set({"-o", path("out")});
  EXPECT_EQ(same.exitCode, 2);
  EXPECT_THAT(inFolder(same.err), HasSubstr("FOLDER/a.mxf and FOLDER/m/a.mxf would have one copy; "));
  const Result over = set({"-o", path("m")});
  EXPECT_EQ(over.exitCode, 2);
  EXPECT_THAT(inFolder(over.err), HasSubstr("the copy of FOLDER/a.mxf would replace FOLDER/m/a.mxf; "));
  EXPECT_TRUE(isUntouched("a.mxf") && isUntouched("m/a.mxf") && !fs::exists(path("out")));
}

TEST_F(PlanTest, CountsCopiesWithoutAChangeApart) {
  addFiles({"a.mxf", "b.mxf"});
  writeTable({"a.mxf"});
  writeFile(table(), readFile(table()) + "b.mxf,Identification.ApplicationName," + kOldName + "\r\n");
  EXPECT_EQ(lastLine(set({"-o", path("out"), "--report", path("report.csv")}).out), "1 file changed, 1 copied\n");
  EXPECT_THAT(report(), HasSubstr(std::string(kOldName) + "," + kOldName + ",already so,\r\n"));
  EXPECT_TRUE(isUntouched("out/b.mxf"));
  EXPECT_EQ(lastLine(set({"-o", path("out")}).out), "2 files already so\n");
}

TEST_F(PlanTest, LeavesCopiesWithoutAChangeWhenAnotherFileIsRefused) {
  addFiles({"b.mxf"});
  writeTable({"missing.mxf"});
  writeFile(table(), readFile(table()) + "b.mxf,Identification.ApplicationName," + kOldName + "\r\n");
  EXPECT_EQ(lastLine(set({"-o", path("out")}).out), "1 file refused, 1 not reached\n");
  EXPECT_FALSE(fs::exists(path("out/b.mxf")));
}

TEST_F(PlanTest, RefusesAFileInThePlaceOfTheFolderOfCopies) {
  addFiles({"a.mxf", "b.mxf"});
  writeTable({"a.mxf"});
  const Result result = set({"-o", path("b.mxf")});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(inFolder(result.err),
              HasSubstr("-o names a folder for the copies of a plan, but 'FOLDER/b.mxf' is a file"));
}

TEST_F(PlanTest, PrintsNamesOfFilesWithoutControlCharacters) {
  addFiles({"a\x1b[2J.mxf"});
  writeTable({"a\x1b[2J.mxf"});
  for (const Names& options : {Names{"--dry-run"}, {"-o", path("out")}, {}}) {
    const Result result = set(options);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_THAT(inFolder(result.out), StartsWith("FOLDER/a\\u001B[2J.mxf\n"));
    EXPECT_EQ(result.out.find('\x1b'), std::string::npos);
  }
}

TEST_F(PlanTest, RefusesTwoSpellingsOfOneProperty) {
  addFiles({"a.mxf", "b.mxf"});
  writeTable({"b.mxf", "a.mxf"});
  writeFile(table(), readFile(table()) + "a.mxf,Identification[1].ApplicationName,Ed\r\n");
  for (const Names& options : {Names{}, {"--sign"}}) {
    auto reported = options;
    reported.insert(reported.end(), {"--report", path("report.csv")});
    const Result result = set(reported);
    EXPECT_EQ(result.exitCode, 1);
    const auto reason =
        "'Identification[1].ApplicationName' of 'a.mxf' is the property of line 3, too, which has it as "
        "'Identification.ApplicationName'";
    EXPECT_THAT(inFolder(result.err), StartsWith(std::string("mxfxml: FOLDER/plan.csv: line 4, column 7: ") + reason));
    EXPECT_THAT(report(), HasSubstr(std::string(",,Ed,refused,") + "\"" + reason + "\"\r\n"));
    EXPECT_TRUE(isUntouched("a.mxf") && isUntouched("b.mxf"));
  }
}

TEST_F(PlanTest, NamesTheLaterLineOfTwoStartTimecodesInAnyOrder) {
  addFiles({"a.mxf"});
  writeFile(table(),
            "file,path,value\na.mxf,Timecode[*].StartTimecode,1\na.mxf,Timecode[1].DropFrame,false\n"
            "a.mxf,Timecode[1].StartTimecode,2\n");
  EXPECT_THAT(inFolder(set().err), StartsWith("mxfxml: FOLDER/plan.csv: line 4, column 7: "
                                              "'Timecode[1].StartTimecode' of 'a.mxf' is the property of line 2, too"));
}

TEST_F(PlanTest, RefusesAReportOverOneOfItsFiles) {
  addFiles({"a.mxf"});
  writeTable({"a.mxf"});
  for (const char* name : {"a.mxf", "plan.csv"}) {
    const Result result = set({"--report", path(name)});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(inFolder(result.err), std::string("mxfxml: the output 'FOLDER/") + name + "' is the input itself\n");
  }
  EXPECT_TRUE(isUntouched("a.mxf"));
}

TEST_F(PlanTest, WritesNothingWithoutAPlaceForItsReport) {
  addFiles({"a.mxf"});
  writeTable({"a.mxf"});
  fs::create_directory(path("folder"));
  ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
  for (const auto& [name, reason] :
       {std::pair("missing/report.csv", "is in a folder that is not there"),
        std::pair("a.mxf/report.csv", "is in a folder that is not there"), std::pair("folder", "is no regular file"),
        std::pair("pipe", "is no regular file")}) {
    const Result result = set({"--report", path(name)});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(inFolder(result.err), std::string("mxfxml: --report: 'FOLDER/") + name + "' " + reason + "\n");
    EXPECT_EQ(result.out, "");  // nothing is checked before
  }
  EXPECT_TRUE(fs::is_fifo(path("pipe")));
  EXPECT_TRUE(isUntouched("a.mxf"));
}

TEST_F(PlanTest, WritesFilesWithoutAReaderOfWhatItShows) {
  addFiles({"a.mxf", "b.mxf"});
  writeTable({"a.mxf", "b.mxf"});
  EXPECT_EQ(run({"set", "--plan", table()}, Out::kPipeWithoutReader).exitCode, 0);
  EXPECT_TRUE(hasName("b.mxf", "Writer of b.mxf"));
}

/// A file that ends behind its header partition names a footer partition that it does not have.
bool isCut(const Path& file) { return file.stem().extension() == ".header"; }

/// The row of the report about an edited copy; of a refusal only the reason, without numbers.
std::string expectedRow(const Path& original) {
  return isCut(original)
             ? ",Ed,refused,.*the header partition names a footer partition at [0-9]+, where the file, which "
               "has [0-9]+ bytes, has none; --force changes such a file in place, "
             : ",Ed,changed,\r";
}

TEST_F(PlanTest, EditsCopiesOfAllSamplesButThoseThatAreCut) {
  std::string text = "file,path,value\r\n";
  std::vector<Path> originals;
  const auto all = sampleFiles();
  for (std::size_t i = 0; i < std::max<std::size_t>(200, all.size()); ++i) {
    const auto& original = all[i % all.size()];
    if (i >= all.size() && fs::file_size(original) > 1u << 20) continue;  // once
    const auto name = std::to_string(originals.size()) + ".mxf";
    fs::copy_file(original, path(name));
    fs::permissions(path(name), fs::perms::owner_read | fs::perms::owner_write);
    text += name + ",Identification[-1].ApplicationName,Ed\r\n";
    originals.push_back(original);
  }
  writeFile(table(), text);
  set({"--keep-going", "--report", path("report.csv")});
  std::istringstream rows(report());
  std::string row;
  std::getline(rows, row);
  for (const auto& original : originals) {
    ASSERT_TRUE(std::getline(rows, row)) << original;
    EXPECT_THAT(row, ContainsRegex(expectedRow(original))) << original;
  }
  EXPECT_FALSE(std::getline(rows, row)) << row;
  const auto cut = static_cast<std::size_t>(std::count_if(originals.begin(), originals.end(), isCut));
  const auto second = lastLine(set({"--keep-going"}).out);
  EXPECT_EQ(countOf("already so", second), originals.size() - cut) << second;
  EXPECT_EQ(countOf("refused", second), cut) << second;
  EXPECT_EQ(countOf("changed", second), 0u) << second;
}

// import

class ImportPlanTest : public PlannedFiles {
 protected:
  /// Files, their exports with another name each, and a table of these.
  void addDocuments(const Names& names) const {
    std::string text = "file,document\n";
    for (const auto& name : names) {
      addFiles({name});
      const bool isJSON = name == names.back();
      auto document = run({"export", path(name), "--format", isJSON ? "json" : "xml"}).out;
      const std::string old = kOldName;
      writeFile(path(name + ".doc"), document.replace(document.find(old), old.size(), "Writer of " + name));
      text += name + "," + name + ".doc\n";
    }
    writeFile(table(), text);
  }
};

TEST_F(ImportPlanTest, PutsDocumentsOfBothFormsIntoTheirFiles) {
  addDocuments({"a.mxf", "b.mxf"});
  const Result result = import({"--report", path("report.csv")});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(lastLine(result.out), "2 files changed\n");
  EXPECT_TRUE(hasName("a.mxf", "Writer of a.mxf") && hasName("b.mxf", "Writer of b.mxf"));
  EXPECT_THAT(report(), HasSubstr(".ApplicationName,\"\"\"GStreamer Multimedia Framework\"\"\",\"\"\"Writer of b.mxf"
                                  "\"\"\",changed,\r\n"));
}

TEST_F(ImportPlanTest, WritesNothingWhenADocumentIsRefused) {
  addDocuments({"a.mxf", "b.mxf"});
  writeFile(path("b.mxf.doc"), "<a>");
  const Result result = import();
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(inFolder(result.err), HasSubstr("FOLDER/plan.csv: line 3, column 7: FOLDER/b.mxf.doc: "));
  EXPECT_TRUE(isUntouched("a.mxf") && isUntouched("b.mxf"));
}

TEST_F(ImportPlanTest, NamesTheDocumentWithAMistakeAndItsCell) {
  const auto start = std::string("mxfxml: FOLDER/plan.csv: line 2, column 7: ");
  for (const auto& [text, message] : std::vector<std::pair<std::string, std::string>>{
           {"<a>\n<b></a>", "FOLDER/a.mxf.doc: not well-formed XML: line 2"},
           {"{\"a\": ", "FOLDER/a.mxf.doc: line 1"},
           {"", "FOLDER/a.mxf.doc: "}}) {
    addDocuments({"a.mxf"});
    writeFile(path("a.mxf.doc"), text);
    const Result result = import({"--report", path("report.csv")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(inFolder(result.err), StartsWith(start + message));
    EXPECT_THAT(inFolder(report()), HasSubstr(message)) << report();
    fs::remove(path("a.mxf"));
  }
}

TEST_F(ImportPlanTest, NamesTheDocumentThatIsNotThere) {
  addDocuments({"a.mxf"});
  fs::remove(path("a.mxf.doc"));
  EXPECT_THAT(inFolder(import().err), AllOf(HasSubstr("FOLDER/plan.csv: line 2, column 7: "),
                                            HasSubstr("FOLDER/a.mxf.doc: No such file or directory")));
}

TEST_F(ImportPlanTest, NamesTheDocumentWithContentThatMeansNothing) {
  addDocuments({"b.mxf", "a.mxf"});
  auto document = readFile(path("b.mxf.doc"));
  const std::string known = "EditRate";
  for (auto at = document.find(known); at != std::string::npos; at = document.find(known)) {
    document.replace(at, known.size(), "EdRate");
  }
  writeFile(path("b.mxf.doc"), document);
  EXPECT_THAT(inFolder(import().err),
              ContainsRegex("plan.csv: line 2, column 7: FOLDER/b.mxf.doc: [0-9]+ things are wrong with the document"));
}

TEST_F(ImportPlanTest, FindsFilesThatHaveTheEdits) {
  for (const Names& options : {Names{}, {"--sign"}, {"--expect-unchanged"}, {"--sign", "--expect-unchanged"}}) {
    addDocuments({"a.mxf", "b.mxf"});
    EXPECT_EQ(import(options).exitCode, 0);
    const auto bytes = readFile(path("a.mxf"));
    fs::copy_file(sample(kOriginal), path("b.mxf"), fs::copy_options::overwrite_existing);  // as if never reached
    const Result again = import(options);
    EXPECT_EQ(again.exitCode, 0) << again.err;
    EXPECT_EQ(lastLine(again.out), "1 file changed, 1 already so\n");
    EXPECT_EQ(again.err, "");
    EXPECT_EQ(readFile(path("a.mxf")), bytes);
    for (const char* name : {"a.mxf", "b.mxf", "a.mxf.doc", "b.mxf.doc"}) fs::remove(path(name));
  }
}

TEST_F(ImportPlanTest, FindsNewSetsOfAnEarlierRun) {
  addFiles({"a.mxf"});
  const auto document = run({"export", path("a.mxf")}).out;
  const auto from = document.find("<s377m:Identification "), end = document.find("</s377m:Identification>", from) + 23;
  const auto attributes = document.find('>', from);
  const auto added = "<s377m:Identification" + document.substr(attributes, end - attributes);
  writeFile(path("a.xml"), document.substr(0, end) + added + document.substr(end));
  writeFile(table(), "file,document\na.mxf,a.xml\n");
  EXPECT_EQ(lastLine(import({"--ignore", "doubled-generation"}).out), "1 file changed\n");
  const auto bytes = readFile(path("a.mxf"));
  EXPECT_EQ(lastLine(import({"--ignore", "doubled-generation"}).out), "1 file already so\n");
  EXPECT_EQ(readFile(path("a.mxf")), bytes);
}

TEST_F(ImportPlanTest, RefusesAFileWithOtherEditsWhereNoneAreExpected) {
  addDocuments({"a.mxf"});
  EXPECT_EQ(run({"set", path("a.mxf"), "Preface.ByteOrder=18761"}).exitCode, 0);
  const auto bytes = readFile(path("a.mxf"));
  const Result result = import({"--expect-unchanged"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("the file has changed since the document was exported"));
  EXPECT_EQ(readFile(path("a.mxf")), bytes);
}

TEST_F(ImportPlanTest, FindsCopiesThatHaveTheEdits) {
  addDocuments({"a.mxf", "b.mxf"});
  const Names options = {"-o", path("out"), "--sign"};
  EXPECT_EQ(import(options).exitCode, 0);
  const auto bytes = readFile(path("out/a.mxf"));
  fs::remove(path("out/b.mxf"));
  const Result again = import(options);
  EXPECT_EQ(again.exitCode, 0) << again.err;
  EXPECT_EQ(lastLine(again.out), "1 file changed, 1 already so\n");
  EXPECT_EQ(readFile(path("out/a.mxf")), bytes);
  EXPECT_TRUE(hasName("out/b.mxf", "Writer of b.mxf"));
}

}  // namespace
}  // namespace Vantor::Tool
