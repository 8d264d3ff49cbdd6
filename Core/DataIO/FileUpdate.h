#pragma once

#include <cstddef>

#include "Core/DataIO/File.h"
#include "Core/DataIO/OutputFile.h"
#include "Core/DataIO/System.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Types.h"

namespace Vantor::DataIO::File {

/// Overwrites bytes of a file that exists, in place and at any offset; the file never becomes longer. Nothing is
/// buffered in between. For changes that can be undone see UndoJournal.h.
class FileUpdate {
 public:
  /// Opens the file and writes nothing.
  /// @throws Exceptions::IOError naming the path and the reason when it is no file that can be written: missing,
  /// forbidden, a directory, a device, or marked as read-only, even for a user who may write such files.
  explicit FileUpdate(const Path& path);

  const Path& path() const { return path_; }
  /// The file's size when it was opened, in bytes.
  uint64 size() const { return size_; }
  /// Takes an advisory lock on the file, held as long as the object lives. To replace the file, hold it until that is
  /// done.
  /// @throws Exceptions::IOError when another object in any process holds it, or when the path leads to another file by
  /// now.
  void lock();
  /// @throws Exceptions::IOError when the bytes would go past the file's size (nothing is written then), or when the
  /// system does not take them (how many it took is unspecified).
  void write(uint64 offset, const uint8* from, std::size_t size);
  /// Flushes everything to the medium.
  /// @throws Exceptions::IOError when it cannot.
  void flush();

 private:
  Path path_;
  Stream stream_;
  uint64 size_ = 0;
};

/// Writes a file that did not exist before, to the medium.
class NewFile : public OutputFile {
 public:
  /// Creates it; it vanishes again unless commit() succeeds.
  /// @throws Exceptions::IOError naming the path and the system's reason, also when there is such a file already.
  explicit NewFile(const Path& path);

  /// Renames it. When this returns, the file and its new name have reached the medium. Called once, and last.
  /// @param target  in the same folder; a file of that name is replaced.
  /// @throws Exceptions::IOError when they have not; the file is removed then.
  void commit(const Path& target);
};

/// @throws Exceptions::IOError naming the path when the file has further names (hard links), or their number cannot be
/// read.
void requireOneName(const Path& path);

/// Removes a file, and its name from the medium.
/// @return kAtomic when the folder cannot be flushed, so that a power failure may bring the file back.
/// @throws Exceptions::IOError when it cannot be removed.
Durability removeFromDisk(const Path& path);

/// Renames a file within its folder, on the medium, too. A file of the new name is replaced.
/// @return kAtomic when the folder cannot be flushed, so that a power failure may bring the old name back.
/// @throws Exceptions::IOError when it cannot be renamed.
Durability renameOnDisk(const Path& from, const Path& to);

}  // namespace Vantor::DataIO::File
