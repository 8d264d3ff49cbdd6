#include "Core/Platform/Files.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <random>
#include <ratio>
#include <string>
#include <system_error>

namespace Vantor::Platform::Files {

namespace {

namespace fs = std::filesystem;

struct HandleCloser {
  void operator()(HANDLE handle) const noexcept { ::CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, HandleCloser>;

HANDLE handleOf(std::FILE* stream) { return reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(stream))); }

/// Asks for no access, so that files which others use have it, too. Null when it fails.
Handle handleOf(const Path& path) {
  const HANDLE handle = ::CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  return Handle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

FileIdentity identityBehind(HANDLE handle) {
  BY_HANDLE_FILE_INFORMATION information{};
  if (::GetFileInformationByHandle(handle, &information) == 0) return {};
  return {information.dwVolumeSerialNumber,
          (static_cast<uint64>(information.nFileIndexHigh) << 32) | information.nFileIndexLow};
}

/// Locks a byte behind the end of every file, because others cannot read a byte that is locked.
bool lock(std::FILE* stream, DWORD kind) {
  OVERLAPPED place{};
  place.OffsetHigh = 0x40000000;
  if (::LockFileEx(handleOf(stream), kind | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) != 0) return true;
  const DWORD error = ::GetLastError();
  return error != ERROR_LOCK_VIOLATION && error != ERROR_IO_PENDING;
}

/// The C library of older systems knows no mode `x`.
std::FILE* createStream(const Path& path) {
  const int descriptor =
      ::_wopen(path.c_str(), _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY | _O_NOINHERIT, _S_IREAD | _S_IWRITE);
  if (descriptor < 0) return nullptr;
  std::FILE* stream = ::_fdopen(descriptor, "wb");
  if (stream == nullptr) ::_close(descriptor);
  return stream;
}

}  // namespace

std::FILE* openStream(const Path& path, const char* mode) {
  errno = 0;
  if (std::strchr(mode, 'x') != nullptr) return createStream(path);
  return ::_wfopen(path.c_str(), std::wstring(mode, mode + std::strlen(mode)).c_str());
}

std::FILE* openStandardInput() {
  errno = 0;
  const int descriptor = ::_dup(::_fileno(stdin));
  if (descriptor < 0) return nullptr;
  ::_setmode(descriptor, _O_BINARY);
  std::FILE* stream = ::_fdopen(descriptor, "rb");
  if (stream == nullptr) ::_close(descriptor);
  if (stream != nullptr) std::setvbuf(stream, nullptr, _IOFBF, kReadAhead);
  return stream;
}

std::optional<uint64> sizeOfUnreadFile(std::FILE* stream) {
  struct _stat64 status {};
  const int descriptor = ::_fileno(stream);
  const bool isFile = ::_fstat64(descriptor, &status) == 0 && (status.st_mode & _S_IFMT) == _S_IFREG;
  if (!isFile || ::_lseeki64(descriptor, 0, SEEK_CUR) != 0) return std::nullopt;
  return static_cast<uint64>(status.st_size);
}

bool seekStream(std::FILE* stream, uint64 offset) {
  errno = 0;
  return ::_fseeki64(stream, static_cast<long long>(offset), SEEK_SET) == 0;
}

bool flushToDisk(std::FILE* stream) {
  errno = 0;
  if (std::fflush(stream) != 0) return false;
  // EBADF: what is behind the stream, such as a pipe, has no medium.
  return ::_commit(::_fileno(stream)) == 0 || (errno == EBADF && ::GetFileType(handleOf(stream)) != FILE_TYPE_DISK);
}

bool lockFile(std::FILE* stream) { return lock(stream, LOCKFILE_EXCLUSIVE_LOCK); }

bool isLocked(const Path& path) {
  const Stream stream(openStream(path, "rb"));
  return stream &&
         !lock(stream.get(), 0);  // shared, so that two who ask at a time do not take each other for the holder
}

bool makePrivateFolder(Path& start) {
  std::random_device random;
  Path name = start;
  name += std::to_string(random());
  std::error_code error;
  if (!fs::create_directory(name, error)) {  // in a folder of the user already
    errno = error ? error.default_error_condition().value() : EEXIST;
    return false;
  }
  start = name;
  return true;
}

bool flushFolder(const Path&) { return true; }

FileIdentity identityOf(const Path& path) {
  const Handle handle = handleOf(path);
  return handle ? identityBehind(handle.get()) : FileIdentity();
}

FileIdentity identityOf(std::FILE* stream) { return identityBehind(handleOf(stream)); }

fs::file_status statusOf(const Path& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (fs::exists(status)) return status;
  const Handle handle = handleOf(path);
  return handle && ::GetFileType(handle.get()) == FILE_TYPE_CHAR ? fs::file_status(fs::file_type::character) : status;
}

// The C library, which some C++ libraries ask, counts one name for every file.
std::uintmax_t nameCount(const Path& path, std::error_code& error) {
  const Handle handle = handleOf(path);
  BY_HANDLE_FILE_INFORMATION information{};
  if (handle && ::GetFileInformationByHandle(handle.get(), &information) != 0) {
    error.clear();
    return information.nNumberOfLinks;
  }
  return fs::hard_link_count(path, error);
}

// The C library, which some C++ libraries ask, has whole seconds.
fs::file_time_type modificationTime(const Path& path, std::error_code& error) {
  using Ticks = std::chrono::duration<uint64, std::ratio<1, 10'000'000>>;
  const auto time = fs::last_write_time(path, error);
  if (error) return time;
  const Handle handle = handleOf(path);
  FILETIME changed{};
  if (!handle || ::GetFileTime(handle.get(), nullptr, nullptr, &changed) == 0) return time;
  const Ticks ticks((uint64{changed.dwHighDateTime} << 32) | changed.dwLowDateTime);
  // Both clocks begin at a whole second.
  const auto fraction = ticks - std::chrono::floor<std::chrono::seconds>(ticks);
  return std::chrono::floor<std::chrono::seconds>(time) +
         std::chrono::duration_cast<fs::file_time_type::duration>(fraction);
}

void copyAttributes(const Path& from, const Path& to) {
  std::error_code error;
  const auto permissions = fs::status(from, error).permissions();
  if (!error) fs::permissions(to, permissions, error);
}

std::string systemReason(int error) { return error == 0 ? "unknown reason" : std::generic_category().message(error); }

}  // namespace Vantor::Platform::Files
