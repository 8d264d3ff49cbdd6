#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "JSONSchema.h"
#include "Program.h"
#include "ScopedVariable.h"
#include "ScratchFolder.h"
#include "Terminal/CharacterWidth.h"
#include "tests/SampleFiles.h"

/// What `info`, `show` and `get` print of every sample: of the files of tests/data, and of those of the folders with
/// samples beside the repository, where they exist. With the environment variable VANTOR_REWRITE_GOLDEN=1 the files in
/// tests/data/views become what they print now; the difference is to be reviewed before it is committed.
namespace Vantor::Tool {
namespace {

const std::vector<std::string> kFolders = {"data", "samples", "more-samples"};

/// The samples of a folder that no other folder before it has.
std::vector<Path> samplesIn(const std::string& folder) {
  auto files = sampleFiles();
  const auto isElsewhere = [&folder](const Path& file) { return file.parent_path().filename() != folder; };
  files.erase(std::remove_if(files.begin(), files.end(), isElsewhere), files.end());
  return files;
}

/// The views of tests/data stand in the folder of all views, the others in folders of their own.
std::string viewPath(const std::string& folder, const std::string& name) {
  const auto views = Path(VANTOR_TEST_DATA_DIR) / "views";
  return (folder == "data" ? views / name : views / folder / name).string();
}

/// With VANTOR_REWRITE_GOLDEN=1, writes the text first.
void expectGolden(const std::string& text, const std::string& path) {
  const char* rewrite = std::getenv("VANTOR_REWRITE_GOLDEN");
  if (rewrite != nullptr && std::string(rewrite) == "1") writeFile(path, text);
  EXPECT_EQ(text, readFile(path));
}

/// The samples of a folder; a test of one that does not exist is skipped.
class ViewsOfFolder : public testing::Test {
 protected:
  void open(const std::string& folder) {
    folder_ = folder;
    files_ = samplesIn(folder);
    ASSERT_TRUE(folder != "data" || !files_.empty());
    if (files_.empty()) GTEST_SKIP() << "there is no folder '" << folder << "' with samples beside the repository";
  }

  std::string golden(const std::string& name) const { return viewPath(folder_, name); }
  const std::vector<Path>& files() const { return files_; }

  /// What a command prints of all files, which stand behind its arguments; without their folder.
  std::string printedOfAll(std::vector<std::string> arguments) const {
    for (const auto& file : files_) arguments.push_back(file.string());
    const Result result = run(arguments);
    EXPECT_LE(result.exitCode, 1) << result.err;
    std::string text = result.out;
    const auto folder = (files_.front().parent_path() / "").string();
    for (auto at = text.find(folder); at != std::string::npos; at = text.find(folder)) text.erase(at, folder.size());
    return text;
  }

 private:
  std::string folder_;
  std::vector<Path> files_;
};

std::string nameOfFolder(std::string folder) {
  folder.erase(std::remove(folder.begin(), folder.end(), '-'), folder.end());
  return folder;
}

class ViewsOfAll : public ViewsOfFolder, public testing::WithParamInterface<std::string> {
 protected:
  void SetUp() override { open(GetParam()); }
};

TEST_P(ViewsOfAll, SummariesAsJSONAreThoseThatWereReviewed) {
  expectGolden(printedOfAll({"info", "--json"}), golden("info.json"));
}

TEST_P(ViewsOfAll, ValuesAreThoseThatWereReviewed) {
  std::vector<std::string> arguments = {"get", "--with-names"};
  for (const char* path :
       {"MaterialPackage.PackageName", "MaterialPackage[*].PackageID", "MaterialPackage/Timecode[1].StartTimecode",
        "Timecode[*].DropFrame", "MaterialPackage/TimelineTrack[*].EditRate",
        "MaterialPackage/TimelineTrack[*].TrackName", "MaterialPackage/SourceClip[1].ComponentLength",
        "MCALabelSubDescriptor[*].RFC5646SpokenLanguage", "Identification[*].ApplicationSupplierName",
        "Identification[-1].ApplicationVersion", "Identification[-1].FileModificationDate", "Preface.FileLastModified",
        "Preface.OperationalPattern", "PictureDescriptor[*].ImageAspectRatio", "PictureDescriptor[*].FrameLayout",
        "SoundDescriptor[*].QuantizationBits", "DescriptiveFramework[*].InstanceUID"}) {
    arguments.insert(arguments.end(), {"-p", path});
  }
  expectGolden(printedOfAll(arguments), golden("get.txt"));
}

INSTANTIATE_TEST_SUITE_P(Each, ViewsOfAll, testing::ValuesIn(kFolders),
                         [](const auto& test) { return nameOfFolder(test.param); });

/// Of files that define their own sets, hundreds of them, only the beginning.
std::vector<std::string> viewOf(const std::string& command, const Path& file) {
  const std::vector<Path> kLong = {"libmxf-writeaviddv50.header.mxf", "bmx-avid-audio_a1.mxf", "bmx-avid-video_v1.mxf"};
  std::vector<std::string> arguments = {command, file.string()};
  const bool isLong = std::find(kLong.begin(), kLong.end(), file.filename()) != kLong.end();
  if (command == "show" && isLong) arguments.insert(arguments.end(), {"--depth", "1"});
  return arguments;
}

class Views : public ViewsOfFolder,
              public testing::WithParamInterface<std::tuple<std::string, std::string, std::string>> {
 protected:
  void SetUp() override { open(std::get<0>(GetParam())); }

  std::string views() const {
    const auto& [folder, command, columns] = GetParam();
    const ScopedVariable width("COLUMNS", columns), locale("LC_ALL", "C.UTF-8");
    std::string text;
    for (const auto& file : files()) {
      const Result result = run(viewOf(command, file));
      EXPECT_EQ(result.exitCode, 0) << file << result.err;
      text += "==> " + file.filename().string() + "\n" + result.out + "\n";
    }
    return text;
  }
};

TEST_P(Views, AreThoseThatWereReviewed) {
  const auto& [folder, command, columns] = GetParam();
  const auto text = views();
  expectGolden(text, golden(command + "-" + columns + ".txt"));
}

/// Of the reviewed text, which AreThoseThatWereReviewed compares with what the commands print.
TEST_P(Views, StayWithinTheColumns) {
  const auto& [folder, command, widest] = GetParam();
  std::istringstream lines(readFile(golden(command + "-" + widest + ".txt")));
  std::size_t columns = 0;
  for (std::string line; std::getline(lines, line);) columns = std::max(columns, columnsOf(line));
  EXPECT_GT(columns, 0u);
  EXPECT_LE(columns, std::stoul(widest));
}

std::string nameOfViews(const testing::TestParamInfo<std::tuple<std::string, std::string, std::string>>& test) {
  const auto& [folder, command, columns] = test.param;
  return nameOfFolder(folder) + "_" + command + columns;
}

INSTANTIATE_TEST_SUITE_P(Each, Views,
                         testing::Combine(testing::ValuesIn(kFolders), testing::Values("info", "show"),
                                          testing::Values("80", "200")),
                         nameOfViews);

TEST_F(JSONSchema, DescribesTheViews) {
  std::vector<std::string> views;
  for (const auto& name : kFolders) views.push_back(viewPath(name, "info.json"));
  const int exitCode = validate(views);
  if (isMissing) GTEST_SKIP() << "python3-jsonschema is missing";
  EXPECT_EQ(exitCode, 0) << readFile(folder.path("problems"));
}

}  // namespace
}  // namespace Vantor::Tool
