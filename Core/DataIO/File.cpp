#include "Core/DataIO/File.h"

#include <cerrno>
#include <random>
#include <string>
#include <system_error>
#include <utility>

#include "Core/DataIO/FileUpdate.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor::DataIO::File {

namespace {

namespace fs = std::filesystem;

constexpr const char* kSourceName = "Core/DataIO/File";
constexpr uint64 kUnknownPosition = ~uint64{0};
constexpr int kNameAttempts = 16;
constexpr int kMostLinks = 40;

[[noreturn]] void throwIOError(const std::string& failure, const Path& path, const std::string& reason, int line) {
  throw ioError(failure, path, reason, kSourceName, line);
}

/// Short, so that it fits wherever the target's own name fits.
std::string temporaryName() {
  std::random_device random;
  std::string name = ".vantor-";
  for (int digit = 0; digit < 16; ++digit) name += "0123456789abcdef"[random() & 15U];
  return name + ".tmp";
}

/// Where symbolic links lead that lead to nothing yet.
Path behindDanglingLinks(const Path& target) {
  std::error_code error;
  Path file = target;
  for (int links = 0; fs::is_symlink(fs::symlink_status(file, error)); ++links) {
    if (links == kMostLinks) throwIOError("cannot write", target, systemReason(ELOOP), __LINE__);
    const Path next = fs::read_symlink(file, error);
    if (error) throwIOError("cannot write", target, error.message(), __LINE__);
    file = file.parent_path() / next;
  }
  return file;
}

Path fileToReplace(const Path& target) {
  std::error_code error;
  const bool isThere = fs::exists(target, error);
  const Path file = isThere ? fs::canonical(target, error) : behindDanglingLinks(target);
  // What is open may be there without a name that could be found, such as a pipe that is standard output.
  const Path named = error && isThere ? target : file;
  // Absolute, so that a later change of the working folder does not move the target.
  const Path absolute = fs::absolute(named, error);
  return error ? named : absolute;
}

/// Renaming over a file would take no permission for it.
void requireWritable(const Path& target) { FileUpdate{target}; }

}  // namespace

FileState stateOf(const Path& path) {
  std::error_code error;
  FileState state;
  state.size = fs::file_size(path, error);
  if (!error) state.modified = fs::last_write_time(path, error);
  if (error) throwIOError("cannot tell the size and time of", path, error.message(), __LINE__);
  state.identity = identityOf(path);
  return state;
}

void requireState(const Path& path, const FileState& expected, const char* failure) {
  if (stateOf(path) == expected) return;
  throwIOError(failure, path, "another program has changed it meanwhile; begin anew", __LINE__);
}

FileDataSource::FileDataSource(Path path) : path_(std::move(path)) {
  std::error_code error;
  const fs::file_status status = fs::status(path_, error);
  // Before opening, because opening a pipe waits for its writer.
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    throwIOError("cannot read", path_, fs::is_directory(status) ? systemReason(EISDIR) : "not a regular file",
                 __LINE__);
  }
  stream_.reset(openStream(path_, "rb"));
  if (!stream_) throwIOError("cannot open", path_, systemReason(errno), __LINE__);
  size_ = fs::file_size(path_, error);
  if (error) throwIOError("cannot tell the size of", path_, error.message(), __LINE__);
}

void FileDataSource::seek(uint64 offset) {
  if (offset > size_) {
    throw Exceptions::ParseError(atOffset(offset) + "expected an offset within '" + path_.u8string() + "', which has " +
                                     std::to_string(size_) + " bytes",
                                 kSourceName, __LINE__);
  }
  position_ = offset;
}

void FileDataSource::read(uint8* to, std::size_t size) {
  require(size);
  if (size == 0) return;
  if (streamPosition_ != position_ && !seekStream(stream_.get(), position_)) {
    throwIOError(atOffset(position_) + "cannot read", path_, systemReason(errno), __LINE__);
  }
  streamPosition_ = kUnknownPosition;
  errno = 0;
  if (std::fread(to, 1, size, stream_.get()) != size) {
    const bool shrunk = std::feof(stream_.get()) != 0;
    std::clearerr(stream_.get());
    throwIOError(atOffset(position_) + "cannot read", path_,
                 shrunk ? "the file has become shorter" : systemReason(errno), __LINE__);
  }
  position_ += size;
  streamPosition_ = position_;
}

void FileDataSource::skip(uint64 size) {
  require(size);
  position_ += size;
}

AtomicFile::AtomicFile(const Path& target) : target_(target), replaced_(fileToReplace(target)) {
  std::error_code error;
  const fs::file_status status = fs::status(replaced_, error);
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    openDirectly();
  } else {
    if (fs::exists(status)) requireWritable(target_);
    openBeside();
    if (fs::exists(status)) copyAttributes(replaced_, temporary_);
  }
}

AtomicFile::~AtomicFile() {
  stream_.reset();
  std::error_code ignored;
  if (!temporary_.empty()) fs::remove(temporary_, ignored);
}

void AtomicFile::openDirectly() {
  stream_.reset(openStream(replaced_, "wb"));
  if (!stream_) throwIOError("cannot write", target_, systemReason(errno), __LINE__);
}

void AtomicFile::openBeside() {
  const Path folder = replaced_.parent_path();
  for (int attempt = 0; !stream_; ++attempt) {
    temporary_ = folder / temporaryName();
    stream_.reset(openStream(temporary_, "wbx"));
    if (!stream_ && (errno != EEXIST || attempt == kNameAttempts)) {
      throwIOError("cannot create a temporary file to write", target_, systemReason(errno), __LINE__);
    }
  }
}

void AtomicFile::write(const uint8* from, std::size_t size) {
  if (!stream_) throwIOError("cannot write", target_, "it has been closed", __LINE__);
  errno = 0;
  if (size != 0 && std::fwrite(from, 1, size, stream_.get()) != size) {
    throwIOError(atOffset(position_) + "cannot write", target_, systemReason(errno), __LINE__);
  }
  position_ += size;
}

Durability AtomicFile::commit(Durability durability, const std::function<void()>& lastCheck) {
  if (!stream_) throwIOError("cannot finish", target_, "it has been closed", __LINE__);
  // A write that failed earlier must not be forgotten just because closing succeeds.
  if (std::ferror(stream_.get()) != 0) throwIOError("cannot finish", target_, "a write failed", __LINE__);
  if (durability == Durability::kSurvivesPowerFailure && !flushToDisk(stream_.get())) {
    throwIOError("cannot finish", target_, systemReason(errno), __LINE__);
  }
  errno = 0;
  if (std::fclose(stream_.release()) != 0) throwIOError("cannot finish", target_, systemReason(errno), __LINE__);
  if (lastCheck) lastCheck();
  return temporary_.empty() ? durability : putInPlace(durability);
}

Durability AtomicFile::putInPlace(Durability durability) {
  std::error_code error;
  fs::rename(temporary_, replaced_, error);
  if (error) throwIOError("cannot replace", target_, error.message(), __LINE__);
  temporary_.clear();
  const bool isFlushed = durability == Durability::kAtomic || flushFolder(replaced_.parent_path());
  return isFlushed ? durability : Durability::kAtomic;
}

}  // namespace Vantor::DataIO::File
