#include "Core/DataIO/Stream.h"

#include <cerrno>
#include <cstring>
#include <system_error>

#ifdef _WIN32
#include <io.h>
#include <sys/locking.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#endif

namespace Vantor::DataIO::File {

std::FILE* openStream(const Path& path, const char* mode) {
  errno = 0;
#ifdef _WIN32
  return ::_wfopen(path.c_str(), std::wstring(mode, mode + std::strlen(mode)).c_str());
#else
  return std::fopen(path.c_str(), mode);
#endif
}

bool seekStream(std::FILE* stream, uint64 offset) {
  errno = 0;
#ifdef _WIN32
  return ::_fseeki64(stream, static_cast<__int64>(offset), SEEK_SET) == 0;
#else
  return ::fseeko(stream, static_cast<off_t>(offset), SEEK_SET) == 0;
#endif
}

bool flushToDisk(std::FILE* stream) {
  errno = 0;
  if (std::fflush(stream) != 0) return false;
#ifdef _WIN32
  return ::_commit(::_fileno(stream)) == 0;
#else
  // EINVAL: what is behind the stream, such as a pipe, has no medium.
  return ::fsync(::fileno(stream)) == 0 || errno == EINVAL;
#endif
}

bool lockFile(std::FILE* stream) {
  errno = 0;
#ifdef _WIN32
  constexpr __int64 kBehindEveryFile = __int64{1} << 62;  // a locked byte cannot be read by others
  const int descriptor = ::_fileno(stream);
  return ::_lseeki64(descriptor, kBehindEveryFile, SEEK_SET) < 0 || ::_locking(descriptor, _LK_NBLCK, 1) == 0 ||
         errno != EACCES;
#else
  return ::flock(::fileno(stream), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
#endif
}

#ifdef _WIN32

bool flushFolder(const Path&) { return true; }

#else

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

#endif

std::string systemReason(int error) { return error == 0 ? "unknown reason" : std::generic_category().message(error); }

}  // namespace Vantor::DataIO::File
