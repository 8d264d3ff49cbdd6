#include "Editing/PrivateFile.h"

#include <cerrno>
#include <fstream>
#include <iterator>
#include <system_error>

#include "Core/Platform/Files.h"
#include "Core/Platform/Path.h"
#include "Terminal/ErrorText.h"

namespace Vantor::Tool {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse(const Path& file, const std::error_code& error) {
  throw OtherFileError("cannot use the temporary file '" + Platform::pathToUTF8(file) + "': " + error.message());
}

std::error_code lastError() { return {errno, std::generic_category()}; }

}  // namespace

PrivateFile::PrivateFile(const Path& name, const std::string& bytes) {
  std::error_code error;
  const auto temporary = fs::temp_directory_path(error);
  if (error) refuse(temporary, error);
  folder_ = temporary / "mxfxml-";
  if (!Platform::Files::makePrivateFolder(folder_)) refuse(folder_, lastError());
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
