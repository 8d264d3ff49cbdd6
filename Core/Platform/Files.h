#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include "Core/Platform/Path.h"
#include "Core/Platform/Types.h"

/// C streams, folders, and attributes of files other than name, bytes, size and time; alike on all systems.
namespace Vantor::Platform::Files {

/// Closes a C stream; for owners that do not care whether closing fails.
struct StreamCloser {
  void operator()(std::FILE* stream) const noexcept { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, StreamCloser>;

/// `std::fopen` for every path; null and `errno` when it fails.
std::FILE* openStream(const Path& path, const char* mode);
/// How far ahead of what is asked for openStandardInput() reads, at most, in bytes.
constexpr std::size_t kReadAhead = std::size_t{1} << 16;
/// Another stream for standard input, which takes bytes as they are. Null and `errno` when it fails, such as for a
/// standard input that is closed.
std::FILE* openStandardInput();
/// The size in bytes of the regular file that a stream is going to read from its start; none for anything else, such
/// as a pipe, a terminal, and a file of which something was read.
std::optional<uint64> sizeOfUnreadFile(std::FILE* stream);
/// Goes to an offset from the start; false and `errno` when it fails.
bool seekStream(std::FILE* stream, uint64 offset);
/// Flushes a stream to the medium; false and `errno` when it fails.
bool flushToDisk(std::FILE* stream);
/// Takes an advisory lock on the file behind a stream, until the stream is closed or the process ends. False when
/// another stream holds it. True, too, where the file system has no locks.
bool lockFile(std::FILE* stream);
/// Whether a stream holds that lock on a file. False where that cannot be found out.
bool isLocked(const Path& path);
/// Whether another file can be renamed over one that is open, or only over one that is closed.
#ifdef _WIN32
constexpr bool kReplacesOpenFiles = false;
#else
constexpr bool kReplacesOpenFiles = true;
#endif
/// Flushes the names in a folder to the medium, so that a file that was created, renamed or removed there
/// stays so; false and `errno` when it fails. Does nothing where folders cannot be flushed.
bool flushFolder(const Path& folder);

/// The same under every name of a file, and different for every other file. Zeros where the system has no such numbers.
struct FileIdentity {
  uint64 device = 0;
  uint64 number = 0;  ///< on this device

  friend bool operator==(const FileIdentity& left, const FileIdentity& right) {
    return left.device == right.device && left.number == right.number;
  }
};

/// Of the file behind symbolic links; zeros also when there is none.
FileIdentity identityOf(const Path& path);
/// Of the file behind a stream, even if another file has its name by now.
FileIdentity identityOf(std::FILE* stream);

/// What is behind a path and its symbolic links, as `std::filesystem::status`, which knows no devices on some systems.
std::filesystem::file_status statusOf(const Path& path);
/// How many names (hard links) a file has.
std::uintmax_t nameCount(const Path& path, std::error_code& error);
/// When a file was last changed, with the resolution of the file system, at best 1 ns.
std::filesystem::file_time_type modificationTime(const Path& path, std::error_code& error);

/// Makes a folder that only the user can use, with a name that begins with `start`, and puts its name there. False and
/// `errno` when it fails.
bool makePrivateFolder(Path& start);

/// Copies owner and group (POSIX), extended attributes including access control lists (Linux), and permissions. Leaves
/// out what the system cannot set or the user may not: the group may be copied without the owner.
void copyAttributes(const Path& from, const Path& to);

/// The text for a value of `errno`.
std::string systemReason(int error);

}  // namespace Vantor::Platform::Files
