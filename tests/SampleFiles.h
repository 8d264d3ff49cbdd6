#pragma once

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <string>
#include <vector>

#include "Core/Platform/Path.h"

namespace Vantor {

/// The MXF files of a folder by name; none when there is no such folder.
inline std::vector<Path> mxfFilesIn(const Path& folder) {
  std::vector<Path> files;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
    if (entry.path().extension() == ".mxf") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

/// The files of tests/data and, where they exist, those of the folders `samples` and `more-samples` of `shared` beside
/// the repository.
inline std::vector<Path> sampleFiles() {
  auto files = mxfFilesIn(VANTOR_TEST_DATA_DIR);
  for (const char* folder : {"samples", "more-samples"}) {
    for (auto& file : mxfFilesIn(Path(VANTOR_SHARED_DIR) / folder)) files.push_back(std::move(file));
  }
  return files;
}

/// Whether the sample has dark groups to which other sets refer: the one of tests/data whose keys were changed.
inline bool hasDarkTargets(const Path& sample) {
  return sample.filename() == "bmx-op1a-adm.header.mxf" && sample.parent_path() == Path(VANTOR_TEST_DATA_DIR);
}

/// Names a sample in the name of a test: by its folder and itself.
inline std::string testNameOf(const Path& sample) {
  std::string name = sample.parent_path().filename().string() + "_" + sample.stem().string();
  for (char& character : name) {
    if (std::isalnum(static_cast<unsigned char>(character)) == 0) character = '_';
  }
  return name;
}

}  // namespace Vantor
