#include "Core/DataIO/File.h"

#include <array>
#include <cerrno>
#include <random>
#include <system_error>
#include <utility>

#include "Core/DataIO/FileUpdate.h"
#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Raise.h"

namespace Vantor::DataIO::File {

namespace {

namespace fs = std::filesystem;
using Exceptions::IOError;
using Exceptions::raise;

constexpr std::size_t kWindowSize = 4096;
constexpr uint64 kUnknownPosition = ~uint64{0};
constexpr int kNameAttempts = 16;
constexpr int kMostLinks = 40;

/// Short, so that it fits wherever the target's own name fits.
std::string temporaryName() {
  std::random_device random;
  std::array<uint8, 8> octets{};
  for (auto& octet : octets) octet = static_cast<uint8>(random());
  return ".vantor-" + Platform::hexText<std::string>(octets.data(), octets.size(), Platform::DigitCase::kLower) +
         ".tmp";
}

/// Follows symbolic links to a file that does not exist yet.
Path behindDanglingLinks(const Path& target) {
  std::error_code error;
  Path file = target;
  for (int links = 0; fs::is_symlink(fs::symlink_status(file, error)); ++links) {
    if (links == kMostLinks) raise<IOError>("cannot write '{}': {}", Platform::pathToUTF8(target), systemReason(ELOOP));
    const Path next = fs::read_symlink(file, error);
    if (error) raise<IOError>("cannot write '{}': {}", Platform::pathToUTF8(target), error.message());
    file = file.parent_path() / next;
  }
  return file;
}

Path fileToReplace(const Path& target) {
  std::error_code error;
  const bool isThere = fs::exists(target, error);
  const Path file = isThere ? fs::canonical(target, error) : behindDanglingLinks(target);
  // An open file may have no name that could be found, such as a pipe on standard output.
  const Path named = error && isThere ? target : file;
  // Absolute, so that a later change of the working folder does not move the target.
  const Path absolute = fs::absolute(named, error);
  return error ? named : absolute;
}

}  // namespace

FileState stateOf(const Path& path) {
  std::error_code error;
  FileState state;
  state.size = fs::file_size(path, error);
  if (!error) state.modified = modificationTime(path, error);
  if (error) raise<IOError>("cannot read the size and time of '{}': {}", Platform::pathToUTF8(path), error.message());
  state.identity = identityOf(path);
  return state;
}

void requireState(const Path& path, const FileState& expected, const char* failure) {
  if (stateOf(path) == expected) return;
  raise<IOError>("{} '{}': another program has changed it meanwhile; begin anew", failure, Platform::pathToUTF8(path));
}

FileDataSource::FileDataSource(Path path) : path_(std::move(path)) {
  const fs::file_status status = statusOf(path_);
  // Before opening, because opening a pipe waits for its writer.
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    raise<IOError>("cannot read '{}': {}", Platform::pathToUTF8(path_),
                   fs::is_directory(status) ? systemReason(EISDIR) : "not a regular file");
  }
  stream_.reset(openStream(path_, "rb"));
  if (!stream_) raise<IOError>("cannot open '{}': {}", Platform::pathToUTF8(path_), systemReason(errno));
  std::setvbuf(stream_.get(), nullptr, _IONBF, 0);
  std::error_code error;
  size_ = fs::file_size(path_, error);
  if (error) raise<IOError>("cannot read the size of '{}': {}", Platform::pathToUTF8(path_), error.message());
}

FileDataSource::FileDataSource(Stream stream, Path name, uint64 size)
    : path_(std::move(name)), stream_(std::move(stream)), size_(size) {
  std::setvbuf(stream_.get(), nullptr, _IONBF, 0);
}

void FileDataSource::readAt(uint64 offset, uint8* to, std::size_t size) {
  std::size_t found = 0;
  if (size >= kWindowSize) {
    found = readFromStream(offset, to, size);
  } else {
    const bool isInWindow = offset >= windowOffset_ && offset + size <= windowOffset_ + window_.size();
    if (!isInWindow) fill(offset);
    const auto at = static_cast<std::size_t>(offset - windowOffset_);
    found = std::min(size, window_.size() - at);
    std::copy_n(window_.data() + at, found, to);
  }
  if (found == size) return;
  raise<IOError>("at byte offset {}: cannot read '{}': the file has become shorter", offset, name());
}

void FileDataSource::fill(uint64 offset) {
  window_.clear();  // so that nothing is in it where reading fails
  Bytes window(static_cast<std::size_t>(std::min<uint64>(kWindowSize, size_ - offset)));
  window.resize(readFromStream(offset, window.data(), window.size()));
  window_ = std::move(window);
  windowOffset_ = offset;
}

/// Returns how many bytes the file has there, up to `size`.
std::size_t FileDataSource::readFromStream(uint64 offset, uint8* to, std::size_t size) {
  if (streamPosition_ != offset && !seekStream(stream_.get(), offset)) {
    raise<IOError>("at byte offset {}: cannot read '{}': {}", offset, name(), systemReason(errno));
  }
  streamPosition_ = kUnknownPosition;
  errno = 0;
  const std::size_t count = std::fread(to, 1, size, stream_.get());
  if (count != size) {
    const bool isAtEnd = std::feof(stream_.get()) != 0;
    const int error = errno;
    std::clearerr(stream_.get());
    if (!isAtEnd) raise<IOError>("at byte offset {}: cannot read '{}': {}", offset, name(), systemReason(error));
    return count;
  }
  streamPosition_ = offset + size;
  return count;
}

AtomicFile::AtomicFile(const Path& target) : OutputFile(target), replaced_(fileToReplace(target)) {
  const fs::file_status status = statusOf(replaced_);
  const bool isThere = fs::exists(status);
  if (isThere && !fs::is_regular_file(status)) {
    if (fs::is_directory(status)) {
      raise<IOError>("cannot write '{}': {}", Platform::pathToUTF8(target), systemReason(EISDIR));
    }
    if (!open(replaced_)) raise<IOError>("cannot write '{}': {}", Platform::pathToUTF8(target), systemReason(errno));
    return;
  }
  if (isThere) FileUpdate{target};  // renaming over a file needs no permission for that file
  for (int attempt = 0; !create(replaced_.parent_path() / temporaryName()); ++attempt) {
    if (errno == EEXIST && attempt < kNameAttempts) continue;
    raise<IOError>("cannot create a temporary file to write '{}': {}", Platform::pathToUTF8(target),
                   systemReason(errno));
  }
  if (isThere) copyAttributes(replaced_, vanishing());
}

Durability AtomicFile::commit(Durability durability, const std::function<void()>& lastCheck) {
  close(durability == Durability::kSurvivesPowerFailure);
  if (lastCheck) lastCheck();
  if (vanishing().empty()) return durability;  // written directly
  std::error_code error;
  fs::rename(vanishing(), replaced_, error);
  if (error) raise<IOError>("cannot replace '{}': {}", Platform::pathToUTF8(name()), error.message());
  keep();
  const bool isFlushed = durability == Durability::kAtomic || flushFolder(replaced_.parent_path());
  return isFlushed ? durability : Durability::kAtomic;
}

}  // namespace Vantor::DataIO::File
