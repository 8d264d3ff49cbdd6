#include "Core/DataIO/FileAttributes.h"

#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "Core/Platform/Raise.h"

#ifndef _WIN32
#include <sys/stat.h>
#include <unistd.h>
#endif
#ifdef __linux__
#include <sys/xattr.h>
#endif

namespace Vantor::DataIO::File {

namespace {

namespace fs = std::filesystem;

#ifdef _WIN32

void copyOwner(const Path&, const Path&) {}

#else

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

#endif

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

#ifdef _WIN32

FileIdentity identityOf(const Path&) { return {}; }

FileIdentity identityOf(std::FILE*) { return {}; }

#else

FileIdentity identityOf(const Path& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 ? identityIn(status) : FileIdentity();
}

FileIdentity identityOf(std::FILE* stream) {
  struct stat status {};
  return ::fstat(::fileno(stream), &status) == 0 ? identityIn(status) : FileIdentity();
}

#endif

void copyAttributes(const Path& from, const Path& to) {
  copyOwner(from, to);
  copyExtendedAttributes(from, to);
  // Last: a change of owner clears some of them, and read-only files take no attributes.
  std::error_code error;
  const auto permissions = fs::status(from, error).permissions();
  if (!error) fs::permissions(to, permissions, error);
}

void requireOneName(const Path& path) {
  std::error_code error;
  const auto names = fs::hard_link_count(path, error);
  if (error) {
    Exceptions::raise<Exceptions::IOError>("cannot read the hard links of '{}': {}", path.u8string(), error.message());
  }
  if (names == 1) return;
  Exceptions::raise<Exceptions::IOError>(
      "cannot change '{}': it has {} hard links, and its other names would change, too, or be parted from it; write to "
      "another file",
      path.u8string(), names);
}

}  // namespace Vantor::DataIO::File
