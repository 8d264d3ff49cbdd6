#include <cstdlib>
#include <fstream>
#include <sstream>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/Platform/Strings.h"
#include "XMLBuilder.h"
#include "tests/XMLBuilder/Support.h"

namespace Vantor::XMLBuilder {
namespace {

/// With the environment variable VANTOR_REWRITE_GOLDEN=1 the files in `golden` become what the library writes now; the
/// difference is to be reviewed before it is committed.
bool isRewriting() {
  const char* flag = std::getenv("VANTOR_REWRITE_GOLDEN");
  return flag != nullptr && std::string(flag) == "1";
}

Path goldenPath(const std::string& name) { return Path(VANTOR_GOLDEN_DIR) / (name + ".xml"); }

std::string readFile(const Path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

void writeFile(const Path& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
  ASSERT_EQ(readFile(path), content) << path << " could not be written";
}

std::string exportedFile(const std::string& name, Flags flags) {
  const auto partition = MXF::readHeaderMetadata(Path(VANTOR_TEST_DATA_DIR) / (name + ".mxf"), builtInDictionary());
  wstring text;
  partition2XML(partition.get(), flags.nestStrongReferences, flags.excludeNonStructural,
                XMLUtils::EncodingType::kUTF8Indented, text);
  return Utils::wstringToString(text);
}

struct GoldenExport {
  const char* file;
  const char* mode;
  Flags flags;
};

class GoldenFilesTest : public ::testing::TestWithParam<GoldenExport> {};

TEST_P(GoldenFilesTest, AFileIsExportedAsReviewed) {
  const auto& [file, mode, flags] = GetParam();
  const Path golden = goldenPath(std::string(file) + "." + mode);
  const std::string text = exportedFile(file, flags);
  if (isRewriting()) {
    writeFile(golden, text);
    GTEST_SKIP() << "rewrote " << golden;
  }
  EXPECT_EQ(text, readFile(golden));
}

constexpr const char* kFiles[] = {"op1a", "bmx-op1a-adm.header", "bmx-rdd9-embedxml.header"};

std::vector<GoldenExport> goldenExports() {
  std::vector<GoldenExport> exports;
  for (const char* file : kFiles) {
    exports.push_back({file, "nested", kNested});
    exports.push_back({file, "flat", kFlat});
  }
  return exports;
}

std::string nameOfExport(const ::testing::TestParamInfo<GoldenExport>& info) {
  std::string name = std::string(info.param.file) + "_" + info.param.mode;
  for (char& character : name) character = std::isalnum(static_cast<unsigned char>(character)) ? character : '_';
  return name;
}

INSTANTIATE_TEST_SUITE_P(Exports, GoldenFilesTest, ::testing::ValuesIn(goldenExports()), nameOfExport);

}  // namespace
}  // namespace Vantor::XMLBuilder
