#include "Core/Platform/Files.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/xattr.h>
#endif

namespace Vantor::Platform::Files {

namespace {

namespace fs = std::filesystem;

/// Only an administrator can give files away, but every user may give them to one of his groups.
void copyOwner(const Path& from, const Path& to) {
  struct stat status {};
  if (::stat(from.c_str(), &status) != 0) return;
  constexpr auto kSameOwner = static_cast<uid_t>(-1);
  const bool isGiven =
      ::chown(to.c_str(), status.st_uid, status.st_gid) == 0 || ::chown(to.c_str(), kSameOwner, status.st_gid) == 0;
  static_cast<void>(isGiven);
}

FileIdentity identityIn(const struct stat& status) {
  return {static_cast<uint64>(status.st_dev), static_cast<uint64>(status.st_ino)};
}

#ifdef __linux__

void copyExtendedAttribute(const Path& from, const Path& to, const char* name) {
  const ssize_t size = ::getxattr(from.c_str(), name, nullptr, 0);
  if (size < 0) return;
  std::vector<char> value(static_cast<std::size_t>(size) + 1);  // its data is never null
  const ssize_t read = ::getxattr(from.c_str(), name, value.data(), value.size());
  if (read >= 0) ::setxattr(to.c_str(), name, value.data(), static_cast<std::size_t>(read), 0);
}

void copyExtendedAttributes(const Path& from, const Path& to) {
  const ssize_t size = ::listxattr(from.c_str(), nullptr, 0);
  if (size <= 0) return;
  std::vector<char> names(static_cast<std::size_t>(size));
  const ssize_t end = ::listxattr(from.c_str(), names.data(), names.size());
  for (ssize_t at = 0; at < end; at += static_cast<ssize_t>(std::strlen(&names[static_cast<std::size_t>(at)])) + 1) {
    copyExtendedAttribute(from, to, &names[static_cast<std::size_t>(at)]);
  }
}

#else

void copyExtendedAttributes(const Path&, const Path&) {}

#endif

}  // namespace

std::FILE* openStream(const Path& path, const char* mode) {
  errno = 0;
  return std::fopen(path.c_str(), mode);
}

std::FILE* openStandardInput() {
  errno = 0;
  const int descriptor = ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0);
  if (descriptor < 0) return nullptr;
  std::FILE* stream = ::fdopen(descriptor, "rb");
  if (stream == nullptr) ::close(descriptor);
  if (stream != nullptr) std::setvbuf(stream, nullptr, _IOFBF, kReadAhead);
  return stream;
}

std::optional<uint64> sizeOfUnreadFile(std::FILE* stream) {
  struct stat status {};
  const int descriptor = ::fileno(stream);
  const bool isFile = ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
  if (!isFile || ::lseek(descriptor, 0, SEEK_CUR) != 0) return std::nullopt;
  return static_cast<uint64>(status.st_size);
}

bool seekStream(std::FILE* stream, uint64 offset) {
  errno = 0;
  return ::fseeko(stream, static_cast<off_t>(offset), SEEK_SET) == 0;
}

bool flushToDisk(std::FILE* stream) {
  errno = 0;
  if (std::fflush(stream) != 0) return false;
  // EINVAL: what is behind the stream, such as a pipe, has no medium.
  return ::fsync(::fileno(stream)) == 0 || errno == EINVAL;
}

bool lockFile(std::FILE* stream) {
  errno = 0;
  return ::flock(::fileno(stream), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

bool isLocked(const Path& path) {
  const Stream stream(openStream(path, "rb"));
  if (!stream) return false;
  // Shared, so that two who ask at a time do not take each other for the holder.
  return ::flock(::fileno(stream.get()), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

bool makePrivateFolder(Path& start) {
  errno = 0;
  std::string name = start.native() + "XXXXXX";
  if (::mkdtemp(name.data()) == nullptr) return false;
  start = name;
  return true;
}

bool flushFolder(const Path& folder) {
  errno = 0;
  const int descriptor = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return false;
  // EINVAL: the file system cannot flush folders; it keeps names in another way.
  const bool isFlushed = ::fsync(descriptor) == 0 || errno == EINVAL;
  const int error = errno;
  ::close(descriptor);
  errno = error;
  return isFlushed;
}

FileIdentity identityOf(const Path& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 ? identityIn(status) : FileIdentity();
}

FileIdentity identityOf(std::FILE* stream) {
  struct stat status {};
  return ::fstat(::fileno(stream), &status) == 0 ? identityIn(status) : FileIdentity();
}

fs::file_status statusOf(const Path& path) {
  std::error_code error;
  return fs::status(path, error);
}

std::uintmax_t nameCount(const Path& path, std::error_code& error) { return fs::hard_link_count(path, error); }

fs::file_time_type modificationTime(const Path& path, std::error_code& error) {
  return fs::last_write_time(path, error);
}

void copyAttributes(const Path& from, const Path& to) {
  copyOwner(from, to);
  copyExtendedAttributes(from, to);
  // Last: a change of owner clears some of them, and read-only files take no attributes.
  std::error_code error;
  const auto permissions = fs::status(from, error).permissions();
  if (!error) fs::permissions(to, permissions, error);
}

std::string systemReason(int error) { return error == 0 ? "unknown reason" : std::generic_category().message(error); }

}  // namespace Vantor::Platform::Files
