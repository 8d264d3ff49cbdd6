#pragma once

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "Core/Platform/Path.h"
#include "tests/Core/Platform/ThisSystem.h"

namespace Vantor {

/// All bytes of a file.
inline std::string contents(const Path& path) {
  std::ifstream stream(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(stream), {});
}

inline void create(const Path& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

/// Each test has an empty folder of its own.
class FolderTest : public testing::Test {
 protected:
  void SetUp() override {
    std::random_device random;
    const std::string name = "vantor-" + std::to_string(random()) + "-" + std::to_string(random());
    folder_ = std::filesystem::temp_directory_path() / name;
    ASSERT_TRUE(std::filesystem::create_directory(folder_));
  }
  void TearDown() override { ThisSystem::removeFolder(folder_); }

  /// What is in the folder, hidden files too.
  std::vector<std::string> names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }

  Path folder_;
};

}  // namespace Vantor
