#pragma once

#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>

#include "Core/Platform/Files.h"
#include "Core/Platform/Path.h"

/// What the system that runs the tests has. A test of what it lacks is skipped.
namespace Vantor::ThisSystem {

/// The device that takes everything and has nothing.
#ifdef _WIN32
constexpr const char* kNullDevice = "NUL";
/// Why a name is refused that is too long.
constexpr const char* kNameTooLong = "No such file or directory";
#else
constexpr const char* kNullDevice = "/dev/null";
constexpr const char* kNameTooLong = "File name too long";
#endif

constexpr const char* kNoPermissions = "no permissions of POSIX on this system";
constexpr const char* kNoSymbolicLinks = "no symbolic links on this system";

/// Permissions other than those to write, for the owner alone.
inline bool hasPermissions(const Path& folder) {
  namespace fs = std::filesystem;
  const Path file = folder / ".permissions";
  std::error_code error;
  std::fclose(Platform::Files::openStream(file, "wb"));
  fs::permissions(file, fs::perms::owner_write, error);
  const bool isKept = !error && fs::status(file, error).permissions() == fs::perms::owner_write;
  fs::remove(file, error);
  return isKept;
}

inline bool hasSymbolicLinks(const Path& folder) {
  std::error_code error;
  std::filesystem::create_symlink("target", folder / ".link", error);
  const bool isMade = !error;
  std::filesystem::remove(folder / ".link", error);
  return isMade;
}

/// Makes a file longer, by a hole where the file system has holes. False where no file is that large.
/// `std::filesystem::resize_file` of some systems has 32 bits.
inline bool growTo(const Path& file, uint64 size) {
  const Platform::Files::Stream stream(Platform::Files::openStream(file, "r+b"));
  return stream && Platform::Files::seekStream(stream.get(), size - 1) && std::fputc(0, stream.get()) != EOF &&
         std::fflush(stream.get()) == 0;
}

/// Removes a folder with all in it. Some systems keep read-only files.
inline void removeFolder(const Path& folder) {
  namespace fs = std::filesystem;
  std::error_code error;
  fs::remove_all(folder, error);
  if (!error) return;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    fs::permissions(entry.path(), fs::perms::owner_write, fs::perm_options::add, error);
  }
  fs::remove_all(folder);
}

}  // namespace Vantor::ThisSystem
