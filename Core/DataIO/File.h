#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>

#include "Core/DataIO/OutputFile.h"
#include "Core/DataIO/SeekableSource.h"
#include "Core/DataIO/System.h"
#include "Core/Platform/Containers.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Types.h"

namespace Vantor::DataIO::File {

/// Differs when another program has changed or replaced the file. Two changes that keep the size, within a tick of the
/// file system's clock (a few ms), look like one.
struct FileState {
  uint64 size = 0;                           ///< in bytes
  std::filesystem::file_time_type modified;  ///< with the resolution of the file system, at best 1 ns
  FileIdentity identity;

  friend bool operator==(const FileState& left, const FileState& right) {
    return left.size == right.size && left.modified == right.modified && left.identity == right.identity;
  }
  friend bool operator!=(const FileState& left, const FileState& right) { return !(left == right); }
};

/// Of the file behind symbolic links.
/// @throws Exceptions::IOError naming the path and the system's reason.
FileState stateOf(const Path& path);
/// @param failure  what cannot be done with the file in another state, such as "cannot change".
/// @throws Exceptions::IOError naming the path when it is in another state.
void requireState(const Path& path, const FileState& expected, const char* failure);

/// A file that is open for reading as long as the source lives.
class FileDataSource : public SeekableSource {
 public:
  /// @throws Exceptions::IOError naming the path and the system's reason when it is not a file that can be read at any
  /// offset (missing, forbidden, a directory, a pipe).
  explicit FileDataSource(Path path);
  /// A regular file that is open already.
  /// @param name  how messages name it. @param size  as sizeOfUnreadFile() has it.
  FileDataSource(Stream stream, Path name, uint64 size);

  const Path& path() const { return path_; }
  std::string name() const override { return Platform::pathToUTF8(path_); }
  /// As of opening; offsets beyond it are refused even if the file has grown.
  uint64 size() const override { return size_; }

 protected:
  void readAt(uint64 offset, uint8* to, std::size_t size) override;

 private:
  void fill(uint64 offset);
  std::size_t readFromStream(uint64 offset, uint8* to, std::size_t size);

  Path path_;
  Stream stream_;
  uint64 size_ = 0;
  uint64 streamPosition_ = 0;
  // A walk over KLVs goes back and forth by a few bytes, for which the stream would drop what it has read ahead.
  Bytes window_;
  uint64 windowOffset_ = 0;
};

/// What a power failure may do to a file that was put in place.
enum class Durability {
  kAtomic,  ///< all processes see the file; the system writes it to the medium in its own time
  /// The medium has either the old file or all of the new one, and the new one once the call returns. Takes as long as
  /// writing everything to the medium.
  kSurvivesPowerFailure
};

/// Writes a file that appears whole or not at all: the bytes go to a temporary file in the target's folder, which
/// commit() renames over the target. The new file gets what copyAttributes() can copy from an existing target, whose
/// other hard links keep the old bytes. A symbolic link stays; the file behind it is replaced or created. A target that
/// is read-only, or that the user may not write, is refused. The renaming is atomic for other processes; for power
/// failures see Durability.
///
/// A target that is a device or a pipe cannot be replaced; it is written directly.
class AtomicFile : public OutputFile {
 public:
  /// Creates the temporary file, which vanishes again unless commit() succeeds.
  /// @throws Exceptions::IOError naming the path and the system's reason; no file is left behind.
  explicit AtomicFile(const Path& target);

  /// Puts the file in place; nothing can be written afterwards.
  /// @param lastCheck  called directly before the renaming, when all bytes are written, and on the medium if that is
  ///                   asked for. What it throws goes on to the caller, and the target is unchanged.
  /// @return what was asked for, or kAtomic where the file is in place but its new name cannot be flushed to the
  /// medium, as in a folder that the user may not read.
  /// @throws Exceptions::IOError when the last bytes or the renaming fail; the target is as it was before then.
  Durability commit(Durability durability = Durability::kAtomic, const std::function<void()>& lastCheck = {});

 private:
  Path replaced_;  ///< the file that commit() replaces
};

}  // namespace Vantor::DataIO::File
