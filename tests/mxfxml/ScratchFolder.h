#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace Vantor::Tool {

/// An empty folder for one test, removed with everything in it at the end.
class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::string path(const std::string& name) const { return (path_ / name).string(); }
  /// The names of the files in it, sorted; temporary and hidden ones too.
  std::vector<std::string> files() const;

 private:
  std::filesystem::path path_;
};

std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& bytes);

}  // namespace Vantor::Tool
