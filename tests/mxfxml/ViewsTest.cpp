#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "Program.h"
#include "ScopedVariable.h"
#include "ScratchFolder.h"
#include "Terminal/CharacterWidth.h"
#include "tests/SampleFiles.h"

namespace Vantor::Tool {
namespace {

/// What `info` and `show` print of every file of tests/data, at 80 and at 200 columns. With the environment variable
/// VANTOR_REWRITE_GOLDEN=1 the files in tests/data/views become what they print now; the difference is to be reviewed
/// before it is committed.
std::string goldenPath(const std::string& command, const std::string& columns) {
  return (Path(VANTOR_TEST_DATA_DIR) / "views" / (command + "-" + columns + ".txt")).string();
}

/// With VANTOR_REWRITE_GOLDEN=1, writes the text first.
void expectGolden(const std::string& text, const std::string& path) {
  const char* rewrite = std::getenv("VANTOR_REWRITE_GOLDEN");
  if (rewrite != nullptr && std::string(rewrite) == "1") writeFile(path, text);
  EXPECT_EQ(text, readFile(path));
}

/// What a command prints of all files of tests/data, which stand behind its arguments; without their folder.
std::string printedOfAll(std::vector<std::string> arguments) {
  for (const auto& file : mxfFilesIn(VANTOR_TEST_DATA_DIR)) arguments.push_back(file.string());
  const Result result = run(arguments);
  EXPECT_LE(result.exitCode, 1) << result.err;
  std::string text = result.out;
  const auto folder = (Path(VANTOR_TEST_DATA_DIR) / "").string();
  for (auto at = text.find(folder); at != std::string::npos; at = text.find(folder)) text.erase(at, folder.size());
  return text;
}

std::string dataPath(const std::string& name) { return (Path(VANTOR_TEST_DATA_DIR) / "views" / name).string(); }

TEST(ViewsOfAll, SummariesAsJSONAreThoseThatWereReviewed) {
  expectGolden(printedOfAll({"info", "--json"}), dataPath("info.json"));
}

TEST(ViewsOfAll, ValuesAreThoseThatWereReviewed) {
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
  expectGolden(printedOfAll(arguments), dataPath("get.txt"));
}

/// Of the file that defines its own sets, four hundred of them, only the beginning.
std::vector<std::string> viewOf(const std::string& command, const Path& file) {
  std::vector<std::string> arguments = {command, file.string()};
  if (command == "show" && file.filename() == "libmxf-writeaviddv50.header.mxf") {
    arguments.insert(arguments.end(), {"--depth", "1"});
  }
  return arguments;
}

class Views : public testing::TestWithParam<std::tuple<std::string, std::string>> {
 protected:
  std::string views() const {
    const auto& [command, columns] = GetParam();
    const ScopedVariable width("COLUMNS", columns), locale("LC_ALL", "C.UTF-8");
    std::string text;
    for (const auto& file : mxfFilesIn(VANTOR_TEST_DATA_DIR)) {
      const Result result = run(viewOf(command, file));
      EXPECT_EQ(result.exitCode, 0) << file << result.err;
      text += "==> " + file.filename().string() + "\n" + result.out + "\n";
    }
    return text;
  }
};

TEST_P(Views, AreThoseThatWereReviewed) {
  const auto& [command, columns] = GetParam();
  const auto path = goldenPath(command, columns);
  const auto text = views();
  expectGolden(text, path);
}

TEST_P(Views, StayWithinTheColumns) {
  std::size_t columns = 0;
  std::string line;
  for (std::istringstream lines(views()); std::getline(lines, line);) columns = std::max(columns, columnsOf(line));
  EXPECT_LE(columns, std::stoul(std::get<1>(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(Each, Views, testing::Combine(testing::Values("info", "show"), testing::Values("80", "200")),
                         [](const auto& test) { return std::get<0>(test.param) + std::get<1>(test.param); });

}  // namespace
}  // namespace Vantor::Tool
