#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "Program.h"
#include "ScratchFolder.h"

/// Header metadata that are exported, edited and put back into a copy of the file, or into the file itself.
namespace Vantor::Tool {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kSample = "gst-audio-ac3.mxf";  // 10,608 bytes; metadata in the header and the footer partition

/// A copy of the sample, its export, and what editing it gives.
class Edit {
 public:
  explicit Edit(std::vector<std::string> exportOptions = {}) {
    std::filesystem::copy_file(sample(kSample), original());
    exportOptions.insert(exportOptions.begin(), {"export", original(), "-o", document()});
    EXPECT_EQ(run(exportOptions).exitCode, 0);
  }

  std::string original() const { return folder_.path("original.mxf"); }
  std::string document() const { return folder_.path("edited.xml"); }
  std::string copy() const { return folder_.path("copy.mxf"); }
  std::vector<std::string> files() const { return folder_.files(); }

  void replace(const std::string& text, const std::string& by) const {
    std::string xml = readFile(document());
    const auto at = xml.find(text);
    ASSERT_NE(at, std::string::npos) << text;
    writeFile(document(), xml.replace(at, text.size(), by));
  }
  Result intoCopy(std::vector<std::string> options = {}) const {
    options.insert(options.begin(), {"import", document(), "--into", original(), "-o", copy()});
    return run(options);
  }
  Result inPlace(std::vector<std::string> options = {}) const {
    options.insert(options.begin(), {"import", document(), "--into", original(), "--in-place"});
    return run(options);
  }
  std::string exported(const std::string& file, const std::string& partition = "header") const {
    return run({"export", file, "--partition", partition}).out;
  }

 private:
  ScratchFolder folder_;
};

constexpr const char* kName = "<rp210:ApplicationName>";

/// What the sample's writer calls itself.
std::string nameIn(const std::string& xml) {
  const auto at = xml.find(kName) + std::string(kName).size();
  return xml.substr(at, xml.find('<', at) - at);
}

TEST(EditedFile, IsTheOriginalWhenNothingWasEdited) {
  for (const auto& options : std::vector<std::vector<std::string>>{
           {}, {"--flat"}, {"--vocabulary", "st434-2014"}, {"--vocabulary", "st434-2014", "--flat"}}) {
    const Edit edit(options);
    const Result result = edit.intoCopy();
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "nothing is edited\n");
    EXPECT_EQ(readFile(edit.copy()), readFile(edit.original()));
    EXPECT_EQ(edit.inPlace().exitCode, 0);
    EXPECT_EQ(readFile(edit.original()), readFile(sample(kSample)));
  }
}

TEST(EditedFile, HasTheEditInEveryPartitionThatRepeatsTheMetadata) {
  const Edit edit;
  const std::string name = nameIn(readFile(edit.document()));
  edit.replace(kName + name, kName + std::string("Ed"));
  const Result result = edit.intoCopy();
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.out, "1 set changed (1 property), 0 added, 0 removed; written to 2 partitions\n");
  EXPECT_EQ(edit.exported(edit.copy()), readFile(edit.document()));
  EXPECT_EQ(edit.exported(edit.copy(), "footer"), readFile(edit.document()));
  EXPECT_EQ(std::filesystem::file_size(edit.copy()), std::filesystem::file_size(edit.original()));
}

TEST(EditedFile, HasTheEditInTheChosenPartitionOnly) {
  const Edit edit;
  edit.replace(kName + nameIn(readFile(edit.document())), kName + std::string("Ed"));
  const Result result = edit.intoCopy({"--partition", "header"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(edit.exported(edit.copy()), readFile(edit.document()));
  EXPECT_EQ(edit.exported(edit.copy(), "footer"), edit.exported(edit.original(), "footer"));
}

TEST(EditedFile, KeepsPartitionsWithOtherMetadataAndTellsSo) {
  const Edit edit;
  edit.replace(kName + nameIn(readFile(edit.document())), kName + std::string("Ed"));
  ASSERT_EQ(edit.inPlace({"--partition", "header"}).exitCode, 0);
  edit.replace(kName + std::string("Ed"), kName + std::string("Again"));
  const Result result = edit.inPlace();
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.err, HasSubstr("partition 2 has other metadata than the header partition, and keeps them; "
                                    "--partition 2 edits them\n"));
  EXPECT_EQ(nameIn(edit.exported(edit.original())), "Again");
  EXPECT_EQ(edit.exported(edit.original(), "footer"), run({"export", sample(kSample), "--partition", "footer"}).out);
}

TEST(EditedFile, IsWrittenAnewWhereTheMetadataHaveNoRoom) {
  const Edit edit;
  edit.replace(kName + nameIn(readFile(edit.document())), kName + std::string(6000, 'x'));
  ASSERT_EQ(edit.intoCopy().exitCode, 0);
  EXPECT_EQ(edit.exported(edit.copy()), readFile(edit.document()));
  EXPECT_EQ(edit.exported(edit.copy(), "footer"), readFile(edit.document()));
  EXPECT_GT(std::filesystem::file_size(edit.copy()), std::filesystem::file_size(edit.original()) + 20000);
  ASSERT_EQ(edit.inPlace().exitCode, 0);
  EXPECT_EQ(readFile(edit.original()), readFile(edit.copy()));
  EXPECT_EQ(edit.files(), (std::vector<std::string>{"copy.mxf", "edited.xml", "original.mxf"}));
}

TEST(EditedFile, KeepsEveryOtherByteInPlace) {
  const Edit edit;
  const std::string before = readFile(edit.original());
  edit.replace("<rp210:TrackID>1<", "<rp210:TrackID>7<");
  const Result result = edit.inPlace({"--partition", "header"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  const std::string after = readFile(edit.original());
  ASSERT_EQ(after.size(), before.size());
  std::size_t different = 0;
  for (std::size_t i = 0; i < after.size(); ++i) different += after[i] != before[i] ? 1 : 0;
  EXPECT_EQ(different, 1u);
}

TEST(EditedFile, LosesWhatWasTakenOutAndGetsWhatWasAdded) {
  const Edit edit;
  edit.replace("<rp210:ApplicationName>" + nameIn(readFile(edit.document())) + "</rp210:ApplicationName>", "");
  edit.replace("<rp210:FormatVersion>", "<rp210:ByteOrder>18761</rp210:ByteOrder><rp210:FormatVersion>");
  const Result result = edit.intoCopy();
  EXPECT_EQ(result.exitCode, 0) << result.err;
  const std::string xml = edit.exported(edit.copy());
  EXPECT_EQ(xml.find(kName), std::string::npos);
  EXPECT_THAT(xml, HasSubstr("<rp210:ByteOrder>18761</rp210:ByteOrder>"));
  EXPECT_EQ(result.out, "2 sets changed (2 properties), 0 added, 0 removed; written to 2 partitions\n");
}

TEST(EditedFile, KeepsWhatADocumentOfAPartDoesNotHave) {
  const Edit edit({"--start", "Identification"});
  edit.replace(kName + nameIn(readFile(edit.document())), kName + std::string("Ed"));
  const Result result = edit.intoCopy();
  EXPECT_EQ(result.out, "1 set changed (1 property), 0 added, 0 removed; written to 2 partitions\n") << result.err;
  EXPECT_EQ(nameIn(edit.exported(edit.copy())), "Ed");
}

/// A whole file with descriptive and dark sets: a header partition that says that it is all there is.
std::string wholeFile(const std::string& name) {
  std::string bytes = readFile(sample(name));
  bytes[13] = 2;
  bytes[14] = 4;                               // a header partition, closed and complete (ST 377-1)
  bytes.replace(44, 8, std::string(8, '\0'));  // which names no footer partition
  return bytes;
}

TEST(EditedFile, KeepsSetsThatAnExportOfStructuralOnesLeavesOut) {
  for (const char* name : {"bmx-rdd9-embedxml.header.mxf", "bmx-op1a-adm.header.mxf"}) {
    const ScratchFolder folder;
    const std::string original = folder.path("a.mxf"), document = folder.path("a.xml"), copy = folder.path("b.mxf");
    writeFile(original, wholeFile(name));
    for (const std::string form : {"--flat", "--structural-only"}) {
      ASSERT_EQ(run({"export", original, "--structural-only", form, "-o", document}).exitCode, 0);
      const Result result = run({"import", document, "--into", original, "-o", copy});
      EXPECT_EQ(result.out, "nothing is edited\n") << name << form << result.err;
      EXPECT_EQ(readFile(copy), readFile(original)) << name << form;
    }
  }
}

TEST(EditedFile, IsTheOriginalWhicheverOfTheDictionariesMadeTheDocument) {
  const ScratchFolder folder;
  const std::string original = folder.path("a.mxf"), document = folder.path("a.xml"), copy = folder.path("b.mxf");
  writeFile(original, wholeFile("bmx-op1a-adm.header.mxf"));
  const std::vector<std::string> definitions = {"--dictionary", sample("adm.dictionary")};
  for (const std::string form : {"--flat", "--encoding"}) {
    std::vector<std::string> make = {"export", original, "-o", document, form};
    if (form == "--encoding") make.push_back("utf-8");
    ASSERT_EQ(run(make).exitCode, 0);
    const Result result = run({"import", document, "--into", original, "-o", copy, definitions[0], definitions[1]});
    EXPECT_EQ(result.out, "nothing is edited\n") << form << result.err;
    EXPECT_EQ(readFile(copy), readFile(original)) << form;
  }
}

TEST(EditedFile, KeepsWhatCouldNotBeRead) {
  const Edit edit;
  edit.replace("<rp210:TrackID>1<", "<rp210:TrackID>one<");
  const Result result = edit.intoCopy();
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.err, HasSubstr("TrackID: 'one' is no whole number from 0 to 4294967295\n"));
  EXPECT_EQ(result.out, "nothing is edited\n");
  EXPECT_EQ(readFile(edit.copy()), readFile(edit.original()));
}

TEST(EditedFile, IsNotWrittenWhenTheDocumentIsWrongAndThatCounts) {
  const Edit edit;
  edit.replace("<rp210:TrackID>1<", "<rp210:TrackID>one<");
  EXPECT_EQ(edit.intoCopy({"--strict"}).exitCode, 1);
  EXPECT_EQ(edit.inPlace({"--strict"}).exitCode, 1);
  EXPECT_EQ(edit.files(), (std::vector<std::string>{"edited.xml", "original.mxf"}));
  EXPECT_EQ(readFile(edit.original()), readFile(sample(kSample)));
}

TEST(EditedFile, IsRefusedWithItsNameWhereItCannotBeChangedSafely) {
  const ScratchFolder folder;
  const std::string original = sample("bmx-op1a-adm.header.mxf");
  std::string xml = run({"export", original}).out;
  ASSERT_NE(xml.find(kName), std::string::npos);
  writeFile(folder.path("a.xml"), xml.insert(xml.find(kName) + std::string(kName).size(), "Ed"));
  const Result result = run({"import", folder.path("a.xml"), "--into", original, "-o", folder.path("b.mxf")});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, AllOf(StartsWith("mxfxml: " + original + ": "), HasSubstr("names a footer partition")));
  EXPECT_EQ(folder.files(), std::vector<std::string>{"a.xml"});
}

TEST(EditedFile, IsOnlyEditedWithOptionsThatGoTogether) {
  for (const auto& [arguments, reason] : std::vector<std::pair<std::vector<std::string>, std::string>>{
           {{"import", "a.xml"}, "-o is required, or --into with --in-place"},
           {{"import", "a.xml", "--into", "a.mxf"}, "-o is required, or --into with --in-place"},
           {{"import", "a.xml", "--in-place"}, "--in-place requires --into"},
           {{"import", "a.xml", "--into", "a.mxf", "--in-place", "-o", "b.mxf"}, "--output excludes --in-place"},
           {{"import", "a.xml", "--into", "a.mxf", "-o", "b.mxf", "--exact"},
            "--into excludes --exact, which gives sets new InstanceUIDs: edits find their sets by these"}}) {
    const Result result = run(arguments);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.err, "mxfxml: " + reason + "; see mxfxml import --help\n");
  }
}

}  // namespace
}  // namespace Vantor::Tool
