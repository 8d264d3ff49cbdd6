#include <gmock/gmock.h>

#include "PlannedFiles.h"

/// How the tables of `set --plan` and `import --plan` are read, and their mistakes.
namespace Vantor::Tool {
namespace {

using testing::HasSubstr;

class PlanTableTest : public PlannedFiles {
 protected:
  PlanTableTest() { addFiles({"a.mxf", "b.mxf"}); }

  /// What is printed of the mistakes of a table, without its name.
  std::string mistakesOf(const std::string& text, bool isImport = false) const {
    writeFile(table(), text);
    const auto result = isImport ? import() : set();
    EXPECT_EQ(result.exitCode, 1) << text;
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(isUntouched("a.mxf") && isUntouched("b.mxf"));
    std::string messages = result.err;
    const auto start = "mxfxml: " + table() + ": ";
    for (auto at = messages.find(start); at != std::string::npos; at = messages.find(start)) {
      messages.erase(at, start.size());
    }
    return messages;
  }
  void expectSet(const std::string& text, const std::string& name) {
    std::filesystem::copy_file(sample(kOriginal), path("a.mxf"), std::filesystem::copy_options::overwrite_existing);
    writeFile(table(), text);
    EXPECT_EQ(set().exitCode, 0) << text;
    EXPECT_TRUE(hasName("a.mxf", name)) << text << diff("a.mxf");
  }
};

constexpr const char* kOneMistake = "the table has a mistake; nothing is written\n";

TEST_F(PlanTableTest, IsReadWithAnySeparatorLineEndAndOrderOfColumns) {
  expectSet("file,path,value\na.mxf,Identification.ApplicationName,Ed\n", "Ed");
  expectSet("value,file,path\r\nEdd,a.mxf,Identification.ApplicationName", "Edd");
  expectSet(
      "\xEF\xBB\xBF"
      "file;path;value\r\na.mxf;Identification.ApplicationName;E,d\r\n",
      "E,d");
  expectSet("File\tPath\t Value \na.mxf\tIdentification.ApplicationName\tE;d\n", "E;d");
  expectSet("file,path,value,action\na.mxf,Identification.ApplicationName,Eddy,set\n,,,\n\n", "Eddy");
}

TEST_F(PlanTableTest, TakesALineThatGivesTheSeparator) {
  expectSet("sep=;\nfile;path;value\na.mxf;Identification.ApplicationName;E,d,,,\n", "E,d,,,");
  expectSet("\xEF\xBB\xBFsep=,\r\nfile,path,value\r\na.mxf,Identification.ApplicationName,Ed\r\n", "Ed");
  expectSet("sep=\t\nfile\tpath\tvalue\na.mxf\tIdentification.ApplicationName\tE;d\n", "E;d");
}

TEST_F(PlanTableTest, CountsALineThatGivesTheSeparator) {
  EXPECT_EQ(mistakesOf("sep=;\nfile;path;value\na.mxf;Preface;1\n").substr(0, 18), "line 3, column 7: ");
  EXPECT_EQ(mistakesOf("sep=;"), "the table is empty; its first line is file,path,value\n");
  EXPECT_THAT(mistakesOf("sep=|\nfile|path|value\n"), HasSubstr("line 1, column 1: there is no column 'sep=|'"));
}

TEST_F(PlanTableTest, TakesALoneCarriageReturnAtItsEndAsALineEnd) {
  expectSet("file,path,value\r\na.mxf,Identification.ApplicationName,Ed\r", "Ed");
  expectSet("file,path,value\r\na.mxf,Identification.ApplicationName,\"Ed\"\r", "Ed");
}

TEST_F(PlanTableTest, TakesQuotedCellsWithSeparatorsQuotesAndNothing) {
  expectSet("file,path,value\n\"a.mxf\",Identification.ApplicationName,\"Ed, \"\"the\"\" one\"\n",
            "Ed, \\\"the\\\" one");
  expectSet("file,path,value\na.mxf,Identification.ApplicationName,\"\"\n", "");
}

TEST_F(PlanTableTest, RemovesPropertiesWithAnAction) {
  writeFile(table(),
            "file,path,value,action\na.mxf,Identification.Platform,,remove\n"
            "a.mxf,Identification.ApplicationName,Ed,\n");
  const auto result = set({"--ignore", "required-property"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_TRUE(hasName("a.mxf", "Ed"));
  EXPECT_THAT(diff("a.mxf"), HasSubstr("missing property: Identification "));
}

TEST_F(PlanTableTest, NamesTheMistakesOfItsFirstLine) {
  EXPECT_EQ(mistakesOf("file,path\na.mxf,Preface.X\n"),
            std::string("line 1, column 1: the table has no column 'value'; its first line is file,path,value\n") +
                kOneMistake);
  EXPECT_EQ(mistakesOf("file,path,value,valeu\n"),
            std::string("line 1, column 17: there is no column 'valeu' (did you mean 'value'?)\n") + kOneMistake);
  EXPECT_EQ(mistakesOf("file,path,value,path\n"),
            std::string("line 1, column 17: the column 'path' is there twice\n") + kOneMistake);
  EXPECT_EQ(mistakesOf("file;path;value\n", true),
            "line 1, column 6: there is no column 'path'\nline 1, column 11: there is no column 'value'\n"
            "line 1, column 1: the table has no column 'document'; its first line is file,document\n"
            "the table has 3 mistakes; nothing is written\n");
  EXPECT_EQ(mistakesOf("\r\n"), "the table is empty; its first line is file,path,value\n");
}

TEST_F(PlanTableTest, NamesAllMistakesOfItsRows) {
  EXPECT_EQ(mistakesOf("file,path,value,action\n"
                       "a.mxf,Preface.ByteOrder,1\n"
                       "\xC3\xA4.mxf,Preface,1,\n"
                       ",Preface.ByteOrder,1,\n"
                       "a.mxf,Preface.ByteOrder,1,delete\n"
                       "a.mxf,Preface.ByteOrder,1,remove\n"
                       "a.mxf,TimelineTrack[1.TrackID,1,\n"),
            "line 2, column 1: the row has 3 cells, not 4; a cell with separators or line ends needs quotes around it\n"
            "line 3, column 7: 'Preface' is no property; write Set.Property, or Set[2].Property for the second set of "
            "a name\n"
            "line 4, column 1: the file name is empty\n"
            "line 5, column 27: 'delete' is no action: expected 'set' or 'remove'\n"
            "line 6, column 25: a property that is removed has no value\n"
            "line 7, column 7: the bracket in 'TimelineTrack[1.TrackID' is not closed\n"
            "the table has 6 mistakes; nothing is written\n");
}

TEST_F(PlanTableTest, NamesTheQuotesAndOctetsThatItCannotRead) {
  EXPECT_EQ(mistakesOf("file,path,value\na.mxf,\"Preface.ByteOrder,1\nb.mxf\n"),
            "line 2, column 7: the quote is not closed\n");
  EXPECT_EQ(mistakesOf("file,path,value\na.mxf,\"Preface\".ByteOrder,1\n"),
            "line 2, column 16: text behind the quote that closes a cell\n");
  EXPECT_EQ(mistakesOf("file,path,value\na.mxf,Preface.\"ByteOrder\",1\n"),
            "line 2, column 15: a quote within a cell that does not begin with one\n");
  EXPECT_EQ(mistakesOf("file,path,value\na.mxf,Preface.ByteOrder,\xE4\n"),
            "line 2, column 25: the cell is not text in UTF-8\n");
}

TEST_F(PlanTableTest, RefusesTwoValuesOfOneProperty) {
  EXPECT_EQ(
      mistakesOf("file,path,value\na.mxf,Preface.ByteOrder,1\n./a.mxf,Preface.ByteOrder,2\n"),
      std::string("line 3, column 9: 'Preface.ByteOrder' of './a.mxf' has another value in line 2\n") + kOneMistake);
  EXPECT_EQ(mistakesOf("file,document\nb.mxf,b.xml\nb.mxf,c.xml\n", true).substr(0, 59),
            "line 3, column 1: 'b.mxf' has a document in line 2 already\n");
  expectSet("file,path,value\na.mxf,Identification.ApplicationName,Ed\na.mxf,Identification.ApplicationName,Ed\n",
            "Ed");
}

TEST_F(PlanTableTest, ThatIsNotThereIsNamed) {
  const Result result = set();
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(inFolder(result.err), "mxfxml: cannot open 'FOLDER/plan.csv': No such file or directory\n");
}

TEST_F(PlanTableTest, ExcludesWhatItReplaces) {
  writeTable({"a.mxf"});
  EXPECT_EQ(set({path("a.mxf")}).exitCode, 2);
  EXPECT_EQ(set({"--start", "Preface"}).exitCode, 2);
  EXPECT_EQ(set({"-o", path("out"), "--dry-run"}).exitCode, 2);
  EXPECT_EQ(import({"--into", path("a.mxf")}).exitCode, 2);
  EXPECT_EQ(run({"set", "--report", path("r.csv")}).exitCode, 2);
  EXPECT_TRUE(isUntouched("a.mxf"));
}

}  // namespace
}  // namespace Vantor::Tool
