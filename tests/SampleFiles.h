#pragma once

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
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

/// Whether two files hold the same bytes; a file that cannot be read has none.
inline bool haveSameBytes(const Path& a, const Path& b) {
  std::ifstream left(a, std::ios::binary), right(b, std::ios::binary);
  using Octets = std::istreambuf_iterator<char>;
  return std::equal(Octets(left), Octets(), Octets(right), Octets());
}

/// The files of tests/data and, where they exist, those of the folders `samples` and `more-samples` of `shared` beside
/// the repository; a file that is in both stands once.
inline std::vector<Path> sampleFiles() {
  const Path data(VANTOR_TEST_DATA_DIR);
  auto files = mxfFilesIn(data);
  for (const char* folder : {"samples", "more-samples"}) {
    for (auto& file : mxfFilesIn(Path(VANTOR_SHARED_DIR) / folder)) {
      if (!haveSameBytes(file, data / file.filename())) files.push_back(std::move(file));
    }
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
