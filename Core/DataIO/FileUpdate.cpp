#include "Core/DataIO/FileUpdate.h"

#include <cerrno>
#include <system_error>

#include "Core/Platform/Path.h"
#include "Core/Platform/Raise.h"

namespace Vantor::DataIO::File {

namespace {

namespace fs = std::filesystem;
using Exceptions::IOError;
using Exceptions::raise;

/// Before opening, because opening a pipe waits for its reader.
void requireWritableFile(const Path& path) {
  constexpr auto kAnyWrite = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
  const fs::file_status status = statusOf(path);
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    raise<IOError>("cannot change '{}': not a regular file", Platform::pathToUTF8(path));
  }
  if (fs::exists(status) && (status.permissions() & kAnyWrite) == fs::perms::none) {
    raise<IOError>("cannot change '{}': it is read-only", Platform::pathToUTF8(path));
  }
}

/// Of the names in a folder, after an attempt to flush it.
Durability durabilityIn(const Path& folder) {
  return flushFolder(folder) ? Durability::kSurvivesPowerFailure : Durability::kAtomic;
}

}  // namespace

FileUpdate::FileUpdate(const Path& path) : path_(path) {
  requireWritableFile(path_);
  stream_.reset(openStream(path_, "r+b"));
  if (!stream_) raise<IOError>("cannot change '{}': {}", Platform::pathToUTF8(path_), systemReason(errno));
  std::setvbuf(stream_.get(), nullptr, _IONBF, 0);
  std::error_code error;
  size_ = fs::file_size(path_, error);
  if (error) raise<IOError>("cannot read the size of '{}': {}", Platform::pathToUTF8(path_), error.message());
}

void FileUpdate::lock() {
  if (!lockFile(stream_.get())) {
    raise<IOError>("cannot change '{}': another program is changing it at the moment; try again later",
                   Platform::pathToUTF8(path_));
  }
  if (!(identityOf(stream_.get()) == identityOf(path_))) {
    raise<IOError>("cannot change '{}': another program has replaced it meanwhile; begin anew",
                   Platform::pathToUTF8(path_));
  }
}

void FileUpdate::write(uint64 offset, const uint8* from, std::size_t size) {
  if (offset > size_ || size > size_ - offset) {
    raise<IOError>("at byte offset {}: cannot change '{}': {} bytes there would go past its {}", offset,
                   Platform::pathToUTF8(path_), size, size_);
  }
  if (size == 0) return;
  const bool isWritten = seekStream(stream_.get(), offset) && std::fwrite(from, 1, size, stream_.get()) == size;
  if (!isWritten)
    raise<IOError>("at byte offset {}: cannot change '{}': {}", offset, Platform::pathToUTF8(path_),
                   systemReason(errno));
}

void FileUpdate::flush() {
  if (!flushToDisk(stream_.get()))
    raise<IOError>("cannot flush '{}': {}", Platform::pathToUTF8(path_), systemReason(errno));
}

NewFile::NewFile(const Path& path) : OutputFile(path) {
  if (!create(path)) raise<IOError>("cannot create '{}': {}", Platform::pathToUTF8(path), systemReason(errno));
}

void NewFile::commit(const Path& target) {
  close(true);
  std::error_code error;
  fs::rename(name(), target, error);
  if (error) raise<IOError>("cannot create '{}': {}", Platform::pathToUTF8(target), error.message());
  keep();
  if (flushFolder(target.parent_path())) return;
  const int reason = errno;
  fs::remove(target, error);
  raise<IOError>("cannot flush the folder '{}': {}", Platform::pathToUTF8(target.parent_path()), systemReason(reason));
}

void requireOneName(const Path& path) {
  std::error_code error;
  const auto names = nameCount(path, error);
  if (error) {
    raise<IOError>("cannot read the hard links of '{}': {}", Platform::pathToUTF8(path), error.message());
  }
  if (names == 1) return;
  raise<IOError>(
      "cannot change '{}': it has {} hard links, and its other names would change, too, or be parted from it; write to "
      "another file",
      Platform::pathToUTF8(path), names);
}

Durability removeFromDisk(const Path& path) {
  std::error_code error;
  fs::remove(path, error);
  if (error) raise<IOError>("cannot remove '{}': {}", Platform::pathToUTF8(path), error.message());
  return durabilityIn(path.parent_path());
}

Durability renameOnDisk(const Path& from, const Path& to) {
  std::error_code error;
  fs::rename(from, to, error);
  if (error)
    raise<IOError>("cannot rename '{}' to '{}': {}", Platform::pathToUTF8(from), Platform::pathToUTF8(to),
                   error.message());
  return durabilityIn(to.parent_path());
}

}  // namespace Vantor::DataIO::File
