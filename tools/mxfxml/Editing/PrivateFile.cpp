#include "Editing/PrivateFile.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <system_error>

#include "Core/Platform/Path.h"
#include "Terminal/ErrorText.h"

namespace Vantor::Tool {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse(const Path& file, const std::error_code& error) {
  throw OtherFileError("cannot use the temporary file '" + Platform::pathToUTF8(file) + "': " + error.message());
}

std::error_code lastError() { return {errno, std::generic_category()}; }

#ifdef _WIN32

/// Temporary files are in a folder of the user there.
Path makeFolder(const Path& start) {
  std::random_device random;
  const auto folder = Path(start) += std::to_string(random());
  std::error_code error;
  if (!fs::create_directory(folder, error)) refuse(folder, error);
  return folder;
}

#else

Path makeFolder(const Path& start) {
  auto name = start.string() + "XXXXXX";
  if (::mkdtemp(name.data()) == nullptr) refuse(name, lastError());  // for the user alone
  return name;
}

#endif

}  // namespace

PrivateFile::PrivateFile(const Path& name, const std::string& bytes) {
  std::error_code error;
  const auto temporary = fs::temp_directory_path(error);
  if (error) refuse(temporary, error);
  folder_ = makeFolder(temporary / "mxfxml-");
  path_ = folder_ / name;
  std::ofstream file(path_, std::ios::binary);
  fs::permissions(path_, fs::perms::owner_read | fs::perms::owner_write, error);
  errno = 0;
  if (file.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush()) return;
  error = lastError();
  file.close();
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
  refuse(path_, error);
}

PrivateFile::~PrivateFile() {
  std::error_code ignored;
  if (!isKept_) fs::remove_all(folder_, ignored);
}

std::string PrivateFile::bytes() const {
  errno = 0;
  std::ifstream file(path_, std::ios::binary);
  if (!file) refuse(path_, lastError());
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace Vantor::Tool
