#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Edit.h"

/// Header metadata that are exported, edited and put back into a copy of the file, or into the file itself.
namespace Vantor::Tool {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kSample = "gst-audio-ac3.mxf";  // 10,608 bytes; metadata in the header and the footer partition

class SampleEdit : public Edit {
 public:
  explicit SampleEdit(std::vector<std::string> exportOptions = {}) : Edit(sample(kSample), std::move(exportOptions)) {}
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
    const SampleEdit edit(options);
    const Result result = edit.intoCopy();
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "nothing is edited\n");
    EXPECT_EQ(readFile(edit.copy()), readFile(edit.original()));
    EXPECT_EQ(edit.inPlace().exitCode, 0);
    EXPECT_EQ(readFile(edit.original()), readFile(sample(kSample)));
  }
}

TEST(EditedFile, HasTheEditInEveryPartitionThatRepeatsTheMetadata) {
  const SampleEdit edit;
  const std::string name = nameIn(readFile(edit.document()));
  edit.replace(kName + name, kName + std::string("Ed"));
  const Result result = edit.intoCopy();
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.out, "1 set changed (1 property); written to 2 partitions, which repeat each other\n");
  EXPECT_EQ(edit.exported(edit.copy()), edit.content());
  EXPECT_EQ(edit.exported(edit.copy(), "footer"), edit.content());
  EXPECT_EQ(std::filesystem::file_size(edit.copy()), std::filesystem::file_size(edit.original()));
}

TEST(EditedFile, HasTheEditInTheChosenPartitionOnly) {
  const SampleEdit edit;
  edit.replace(kName + nameIn(readFile(edit.document())), kName + std::string("Ed"));
  const Result result = edit.intoCopy(ignoring({"repeated-metadata"}, {"--partition", "header"}));
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(edit.exported(edit.copy()), edit.content());
  EXPECT_EQ(edit.exported(edit.copy(), "footer"), edit.exported(edit.original(), "footer"));
}

TEST(EditedFile, KeepsPartitionsWithOtherMetadataAndTellsSo) {
  const SampleEdit edit;
  edit.replace(kName + nameIn(readFile(edit.document())), kName + std::string("Ed"));
  ASSERT_EQ(edit.inPlace(ignoring({"repeated-metadata"}, {"--partition", "header"})).exitCode, 0);
  edit.replace("<rp210:ApplicationSupplierName>", "<rp210:ApplicationSupplierName>Again ");
  const Result result = edit.inPlace();
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.err, HasSubstr("partition 2 has other metadata than the header partition, and keeps them; "
                                    "--partition 2 edits them\n"));
  EXPECT_EQ(edit.exported(edit.original()), edit.content());
  EXPECT_EQ(edit.exported(edit.original(), "footer"), edit.exported(sample(kSample), "footer"));
}

TEST(EditedFile, IsWrittenAnewWhereTheMetadataHaveNoRoom) {
  const SampleEdit edit;
  edit.replace(kName + nameIn(readFile(edit.document())), kName + std::string(6000, 'x'));
  ASSERT_EQ(edit.intoCopy().exitCode, 0);
  EXPECT_EQ(edit.exported(edit.copy()), edit.content());
  EXPECT_EQ(edit.exported(edit.copy(), "footer"), edit.content());
  EXPECT_GT(std::filesystem::file_size(edit.copy()), std::filesystem::file_size(edit.original()) + 20000);
  ASSERT_EQ(edit.inPlace().exitCode, 0);
  EXPECT_EQ(readFile(edit.original()), readFile(edit.copy()));
  EXPECT_EQ(edit.files(), (std::vector<std::string>{"copy.mxf", "edited.xml", "original.mxf"}));
}

TEST(EditedFile, KeepsEveryOtherByteInPlace) {
  const SampleEdit edit;
  const std::string before = readFile(edit.original());
  edit.replace("<rp210:TrackID>1<", "<rp210:TrackID>7<");
  const Result result = edit.inPlace(ignoring({"repeated-metadata"}, {"--partition", "header"}));
  ASSERT_EQ(result.exitCode, 0) << result.err;
  const std::string after = readFile(edit.original());
  ASSERT_EQ(after.size(), before.size());
  std::size_t different = 0;
  for (std::size_t i = 0; i < after.size(); ++i) different += after[i] != before[i] ? 1 : 0;
  EXPECT_EQ(different, 1u);
}

TEST(EditedFile, LosesWhatWasTakenOutAndGetsWhatWasAdded) {
  const SampleEdit edit;
  edit.replace("<rp210:ApplicationName>" + nameIn(readFile(edit.document())) + "</rp210:ApplicationName>", "");
  edit.replace("<rp210:FormatVersion>", "<rp210:ByteOrder>18761</rp210:ByteOrder><rp210:FormatVersion>");
  const Result result = edit.intoCopy(ignoring({"required-property"}));
  EXPECT_EQ(result.exitCode, 0) << result.err;
  const std::string xml = edit.exported(edit.copy());
  EXPECT_EQ(xml.find(kName), std::string::npos);
  EXPECT_THAT(xml, HasSubstr("<rp210:ByteOrder>18761</rp210:ByteOrder>"));
  EXPECT_EQ(result.out, "2 sets changed (2 properties); written to 2 partitions, which repeat each other\n");
}

TEST(EditedFile, KeepsWhatADocumentOfAPartDoesNotHave) {
  const SampleEdit edit({"--start", "Identification"});
  edit.replace(kName + nameIn(readFile(edit.document())), kName + std::string("Ed"));
  const Result result = edit.intoCopy();
  EXPECT_EQ(result.out, "1 set changed (1 property); written to 2 partitions, which repeat each other\n") << result.err;
  EXPECT_EQ(nameIn(edit.exported(edit.copy())), "Ed");
}

TEST(EditedFile, IsTheOriginalWhicheverOfTheDictionariesMadeTheDocument) {
  const ScratchFolder folder;
  const std::string original = folder.path("a.mxf"), document = folder.path("a.xml"), copy = folder.path("b.mxf");
  writeFile(original, wholeFile("bmx-op1a-adm.header.mxf"));
  const std::vector<std::string> definitions = {"--dictionary", sample("adm.dictionary")};
  for (const auto& form : std::vector<std::vector<std::string>>{{},
                                                                {"--flat"},
                                                                {"--structural-only"},
                                                                {"--structural-only", "--flat"},
                                                                {"--start", "SourcePackage"},
                                                                {"--start", "SourcePackage", "--flat"},
                                                                {"--start", "ContentStorage", "--structural-only"}}) {
    std::vector<std::string> make = {"export", original, "-o", document};
    make.insert(make.end(), form.begin(), form.end());
    ASSERT_EQ(run(make).exitCode, 0);
    const Result result = run({"import", document, "--into", original, "-o", copy, definitions[0], definitions[1]});
    EXPECT_EQ(result.out, "nothing is edited\n") << testing::PrintToString(form) << result.err;
    EXPECT_TRUE(readFile(copy) == readFile(original)) << testing::PrintToString(form);
  }
}

TEST(EditedFile, KeepsWhatCouldNotBeRead) {
  const SampleEdit edit;
  edit.replace("<rp210:TrackID>1<", "<rp210:TrackID>one<");
  const Result result = edit.intoCopy({"--keep-going"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("TrackID: 'one' is no whole number from 0 to 4294967295\n"));
  EXPECT_EQ(result.out, "nothing is edited\n");
  EXPECT_EQ(readFile(edit.copy()), readFile(edit.original()));
}

TEST(EditedFile, KeepsAllThatADocumentWithAMistakeLacksAndTellsHowMuch) {
  const SampleEdit edit;
  edit.replace("<rp210:TrackID>1<", "<rp210:TrackID>one<");
  edit.cut("<rp210:ApplicationSupplierName>", "</rp210:FileModificationDate>");
  const Result result = edit.intoCopy({"--keep-going"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "nothing is edited\n");
  EXPECT_THAT(edit.remarks(result),
              HasSubstr("6 properties that the document lacks are kept, since parts of it could not be read\n"));
  EXPECT_EQ(readFile(edit.copy()), readFile(edit.original()));
}

const std::string kItemOfInstanceUID("\x3c\x0a\x00\x10", 4);  // local tag and length (ST 377-1)

/// The sample in which some octets of InstanceUIDs are others wherever they occur.
std::string changedSample(const std::string& from, const std::string& to) {
  std::string bytes = readFile(sample(kSample));
  for (auto at = bytes.find(from); at != std::string::npos; at = bytes.find(from, at + 1)) {
    bytes.replace(at, to.size(), to);
  }
  return bytes;
}

TEST(EditedFile, KeepsASetThatSharesItsInstanceUIDAndTellsOfTheEdit) {
  const ScratchFolder folder;
  writeFile(folder.path("changed.mxf"),
            changedSample(kItemOfInstanceUID + "\xFC\x1A\xAE\xAC\xDE\x38\x4E\xA6\x85\xC5\x8A\x73\x06\x23\x40\xB0",
                          kItemOfInstanceUID + "\x8B\xA4\xE1\x37\x37\x4E\x42\xEB\x9E\x4D\xA4\x6E\x41\x69\xC5\xDD"));
  const Edit edit(folder.path("changed.mxf"), {});
  EXPECT_EQ(edit.intoCopy().out, "nothing is edited\n");
  EXPECT_EQ(readFile(edit.copy()), readFile(edit.original()));
  edit.replace("<rp210:ComponentLength>4<", "<rp210:ComponentLength>5<");
  const Result result = edit.intoCopy({"--keep-going"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "nothing is edited\n");
  EXPECT_THAT(edit.remarks(result), HasSubstr("an edit of the Sequence 8B.A4.E1.37.37.4E.42.EB.9E.4D.A4.6E.41.69.C5.DD "
                                              "is rejected: another set has the same InstanceUID\n"));
}

TEST(EditedFile, KeepsASetWithoutInstanceUIDAndTellsOfTheEdit) {
  const ScratchFolder folder;
  writeFile(folder.path("changed.mxf"), changedSample(kItemOfInstanceUID + "\x85\x43", "\x3c\x0b"));
  const Edit edit(folder.path("changed.mxf"), {});
  const Result unedited = edit.intoCopy({"--strict"});
  EXPECT_EQ(unedited.out, "nothing is edited\n");
  EXPECT_EQ(unedited.err, "");
  EXPECT_EQ(readFile(edit.copy()), readFile(edit.original()));
  edit.replace("<rp210:ApplicationName>", "<rp210:ApplicationName>Ed ");
  const Result result = edit.intoCopy({"--keep-going"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "nothing is edited\n");
  EXPECT_EQ(edit.remarks(result), "an edit of the Identification is rejected: it has no InstanceUID\n");
}

TEST(EditedFile, KeepsASetWhoseKindHasNoInstanceUIDAndTellsOfTheEdit) {
  const ScratchFolder folder;
  writeFile(folder.path("whole.mxf"), wholeFile("bmx-op1a-adm.header.mxf"));
  writeFile(folder.path("own.dictionary"),
            "dictionary 1\n060e2b34.02530101.0d010101.0101f110  Streams  -\n"
            "  -  060e2b34.0101010e.0402f308.06000000  StreamNumbers  ArrayOf(UInt32)  required\n");
  const Edit edit(folder.path("whole.mxf"), {"--dictionary", folder.path("own.dictionary")});
  const std::vector<std::string> options = {"--dictionary", folder.path("own.dictionary")};
  EXPECT_EQ(edit.intoCopy(options).out, "nothing is edited\n");
  EXPECT_EQ(readFile(edit.copy()), readFile(edit.original()));
  const std::string xml = readFile(edit.document());
  const auto item = xml.find(":Element>", xml.find(":StreamNumbers>")) + std::string(":Element>").size();
  writeFile(edit.document(), xml.substr(0, item) + "9" + xml.substr(item));
  const Result result = edit.intoCopy({"--keep-going", options[0], options[1]});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "nothing is edited\n");
  EXPECT_EQ(edit.remarks(result), "an edit of the Streams is rejected: it has no InstanceUID\n");
}

TEST(EditedFile, IsNotWrittenWhenTheDocumentIsWrongAndThatCounts) {
  const SampleEdit edit;
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
           {{"import", "a.xml"}, "-o is required, or --into with --in-place or --dry-run"},
           {{"import", "a.xml", "--into", "a.mxf"}, "-o is required, or --into with --in-place or --dry-run"},
           {{"import", "a.xml", "--in-place"}, "--in-place requires --into"},
           {{"import", "a.xml", "-o", "b.mxf", "--partition", "footer"}, "--partition requires --into"},
           {{"import", "a.xml", "-o", "b.mxf", "--start", "Preface"}, "--start requires --into"},
           {{"import", "a.xml", "-o", "b.mxf", "--structural-only"}, "--structural-only requires --into"},
           {{"import", "a.xml", "-o", "b.mxf", "--expect-unchanged"}, "--expect-unchanged requires --into"},
           {{"import", "a.xml", "-o", "b.mxf", "--merge-anyway"}, "--merge-anyway requires --into"},
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
