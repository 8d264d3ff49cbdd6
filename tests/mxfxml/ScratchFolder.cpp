#include "ScratchFolder.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace Vantor::Tool {

namespace fs = std::filesystem;

ScratchFolder::ScratchFolder() {
  std::string name = (fs::temp_directory_path() / "mxfxml-test-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("cannot create " + name);
  path_ = name;
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

std::vector<std::string> ScratchFolder::files() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(path_)) names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot open " + path);
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
}

void writeFile(const std::string& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary);
  file << bytes << std::flush;
  if (!file) throw std::runtime_error("cannot write " + path);
}

}  // namespace Vantor::Tool
