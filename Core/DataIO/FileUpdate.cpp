#include "Core/DataIO/FileUpdate.h"

#include <cerrno>
#include <utility>

#include "Core/DataIO/DataSource.h"
#include "Core/DataIO/FileAttributes.h"

namespace Vantor::DataIO::File {

namespace {

namespace fs = std::filesystem;

constexpr const char* kSourceName = "Core/DataIO/FileUpdate";

[[noreturn]] void throwIOError(const std::string& failure, const Path& path, const std::string& reason, int line) {
  throw ioError(failure, path, reason, kSourceName, line);
}

/// Before opening, because opening a pipe waits for its reader.
void requireWritableFile(const Path& path) {
  constexpr auto kAnyWrite = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    throwIOError("cannot change", path, "not a regular file", __LINE__);
  }
  if (fs::exists(status) && (status.permissions() & kAnyWrite) == fs::perms::none) {
    throwIOError("cannot change", path, "it is read-only", __LINE__);
  }
}

}  // namespace

FileUpdate::FileUpdate(const Path& path) : path_(path) {
  requireWritableFile(path_);
  stream_.reset(openStream(path_, "r+b"));
  if (!stream_) throwIOError("cannot change", path_, systemReason(errno), __LINE__);
  std::setvbuf(stream_.get(), nullptr, _IONBF, 0);
  std::error_code error;
  size_ = fs::file_size(path_, error);
  if (error) throwIOError("cannot tell the size of", path_, error.message(), __LINE__);
}

void FileUpdate::lock() {
  if (!lockFile(stream_.get())) {
    throwIOError("cannot change", path_, "another program is changing it at the moment; try again later", __LINE__);
  }
  if (!(identityOf(stream_.get()) == identityOf(path_))) {
    throwIOError("cannot change", path_, "another program has replaced it meanwhile; begin anew", __LINE__);
  }
}

void FileUpdate::write(uint64 offset, const uint8* from, std::size_t size) {
  if (offset > size_ || size > size_ - offset) {
    throwIOError(atOffset(offset) + "cannot change", path_,
                 std::to_string(size) + " bytes there would go past its " + std::to_string(size_), __LINE__);
  }
  if (size == 0) return;
  const bool isWritten = seekStream(stream_.get(), offset) && std::fwrite(from, 1, size, stream_.get()) == size;
  if (!isWritten) throwIOError(atOffset(offset) + "cannot change", path_, systemReason(errno), __LINE__);
}

void FileUpdate::flush() {
  if (!flushToDisk(stream_.get())) throwIOError("cannot flush", path_, systemReason(errno), __LINE__);
}

NewFile::NewFile(Path path) : path_(std::move(path)), stream_(openStream(path_, "wbx")) {
  if (!stream_) throwIOError("cannot create", path_, systemReason(errno), __LINE__);
}

NewFile::~NewFile() {
  stream_.reset();
  std::error_code ignored;
  if (!isCommitted_) fs::remove(path_, ignored);
}

void NewFile::write(const uint8* from, std::size_t size) {
  errno = 0;
  if (size != 0 && std::fwrite(from, 1, size, stream_.get()) != size) {
    throwIOError("cannot write", path_, systemReason(errno), __LINE__);
  }
  position_ += size;
}

void NewFile::commit() {
  const bool isFlushed = std::ferror(stream_.get()) == 0 && flushToDisk(stream_.get());
  if (!isFlushed) throwIOError("cannot write", path_, systemReason(errno), __LINE__);
  errno = 0;
  if (std::fclose(stream_.release()) != 0) throwIOError("cannot write", path_, systemReason(errno), __LINE__);
  if (!flushFolder(path_.parent_path()))
    throwIOError("cannot flush the folder of", path_, systemReason(errno), __LINE__);
  isCommitted_ = true;
}

void removeFromDisk(const Path& path) {
  std::error_code error;
  fs::remove(path, error);
  if (error) throwIOError("cannot remove", path, error.message(), __LINE__);
  if (!flushFolder(path.parent_path())) throwIOError("cannot flush the folder of", path, systemReason(errno), __LINE__);
}

}  // namespace Vantor::DataIO::File
