#include <gmock/gmock.h>

#include "Core/DataIO/File.h"
#include "Core/MXF/MetadataRoom.h"
#include "Core/MXF/ObjectDirectory.h"
#include "Edit.h"
#include "tests/SampleFiles.h"

/// Edits of files with an object directory.
namespace Vantor::Tool {
namespace {

using testing::HasSubstr;

/// The whole samples that have one; none where the folder of these samples is missing.
std::vector<Path> filesWithDirectory() {
  std::vector<Path> files;
  for (const auto& file : mxfFilesIn(Path(VANTOR_SHARED_DIR) / "more-samples")) {
    if (file.filename().string().find("-avid-") != std::string::npos) files.push_back(file);
  }
  return files;
}

/// The header metadata of a file, of which each entry of the directory was followed to its set.
Bytes followed(const std::string& path) {
  DataIO::File::FileDataSource source(path);
  const auto room = MXF::findMetadataRoom(source, MXF::readStructure(source), 0);
  EXPECT_TRUE(room && room->hasObjectDirectory);
  const Bytes metadata = MXF::readRoom(source, MXF::withoutFill(source, *room));
  EXPECT_NO_THROW(MXF::requireSoundDirectory(metadata, room->offset));
  return metadata;
}

class EditedDirectory : public testing::TestWithParam<Path> {
 protected:
  EditedDirectory() : edit_(GetParam().string(), {}) {
    std::filesystem::permissions(edit_.original(), std::filesystem::perms::owner_all);
  }
  Result set(const std::string& assignment) const {
    return run({"set", edit_.original(), "Identification." + assignment});
  }

  const Edit edit_;
};

TEST_P(EditedDirectory, FollowsStringsThatGetLongerAndShorter) {
  ASSERT_EQ(set("ApplicationName=Edit").exitCode, 0);
  const Bytes before = followed(edit_.original());
  for (const auto size : {50, 3, 0, 3000}) {
    const Result result = set("ApplicationName=" + std::string(size, 'x'));
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "1 set changed (1 property); written to 1 partition\n");
    EXPECT_EQ(followed(edit_.original()).size(), before.size() + 2 * size - 8);
  }
  EXPECT_EQ(std::filesystem::file_size(edit_.original()), std::filesystem::file_size(GetParam()));
  ASSERT_EQ(set("ApplicationName=Edit").exitCode, 0);
  EXPECT_EQ(followed(edit_.original()), before);
}

TEST_P(EditedDirectory, FollowsMetadataThatOutgrowTheirRoom) {
  std::vector<std::string> arguments = {"set", edit_.original()};
  for (const char* name : {"ApplicationName", "ApplicationSupplierName", "ApplicationVersionString"}) {
    arguments.push_back("Identification." + std::string(name) + "=" + std::string(32000, 'x'));
  }
  const Result result = run(arguments);
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_GT(std::filesystem::file_size(edit_.original()), std::filesystem::file_size(GetParam()));
  EXPECT_GT(followed(edit_.original()).size(), 192000u);
}

TEST_P(EditedDirectory, FollowsSetsThatAreAddedAndTakenOut) {
  ASSERT_EQ(set("ApplicationName=Edit").exitCode, 0);  // fill gets length fields of our own
  edit_.exportAgain({});
  const Bytes before = followed(edit_.original());
  const std::string document = edit_.content(), end = "</s377m:Identification>";
  const auto from = document.find("<s377m:Identification"), to = document.find(end) + end.size();
  std::string copy = document.substr(from, to - from);
  const auto uid = copy.find('"') + 1;
  copy.replace(uid, 2, copy.compare(uid, 2, "00") == 0 ? "01" : "00");
  const std::string generation = "<rp210:GenerationID>";
  copy.replace(copy.find(generation) + generation.size(), 5, "01.23");
  edit_.replace(end, end + copy);
  EXPECT_EQ(edit_.inPlace().out, "1 set changed (1 property), 1 added; written to 1 partition\n");
  EXPECT_GT(followed(edit_.original()).size(), before.size() + 25);
  edit_.exportAgain({});
  edit_.replace(copy, "");
  EXPECT_EQ(edit_.inPlace().out, "1 set changed (1 property), 1 removed; written to 1 partition\n");
  EXPECT_EQ(followed(edit_.original()), before);
}

TEST_P(EditedDirectory, IsLeftAloneByADocumentThatIsNotEdited) {
  EXPECT_EQ(edit_.inPlace().out, "nothing is edited\n");
  EXPECT_EQ(readFile(edit_.original()), readFile(GetParam().string()));
}

TEST_P(EditedDirectory, IsNoEditOfItsOwn) {
  edit_.replace("groups:Key=\"96.13.B3.8A.87.34.87.46.F1.02.96.F0.56.E0.4D.2A\">00",
                "groups:Key=\"96.13.B3.8A.87.34.87.46.F1.02.96.F0.56.E0.4D.2A\">01");
  EXPECT_EQ(edit_.inPlace().out, "nothing is edited\n");
  ASSERT_EQ(set("ApplicationName=Longer than before").exitCode, 0);
  const Result compared = run({"diff", GetParam().string(), edit_.original()});
  EXPECT_THAT(compared.out, testing::ContainsRegex("object directories with other offsets [12]"));  // and the root
  EXPECT_THAT(compared.out, HasSubstr(", different 1; "));
}

TEST_P(EditedDirectory, IsRefusedWhereItIsWrongAlready) {
  std::string bytes = readFile(edit_.original());
  const std::string key("\x96\x13\xB3\x8A\x87\x34\x87\x46\xF1\x02\x96\xF0\x56\xE0\x4D\x2A", 16);
  bytes[bytes.find(key) + 16 + 9 + 9 + 16 + 7] ^= 1;  // the first entry's offset
  writeFile(edit_.original(), bytes);
  const Result result = set("ApplicationName=Edit");
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("the object directory has the set with identifier "));
  EXPECT_EQ(readFile(edit_.original()), bytes);
}

INSTANTIATE_TEST_SUITE_P(Samples, EditedDirectory, testing::ValuesIn(filesWithDirectory()),
                         [](const auto& info) { return testNameOf(info.param); });
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(EditedDirectory);

}  // namespace
}  // namespace Vantor::Tool
