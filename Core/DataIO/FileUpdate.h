#pragma once

#include <cstddef>

#include "Core/DataIO/DataSink.h"
#include "Core/DataIO/Stream.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Types.h"

namespace Vantor::DataIO::File {

/// Overwrites bytes of a file that exists, in place and at any offset; the file never becomes longer. What was written
/// is at the system at once, with no buffer in between. For changes that can be undone see UndoJournal.h.
class FileUpdate {
 public:
  /// Opens the file and writes nothing.
  /// @throws Exceptions::IOError naming the path and the reason when it is no file that can be written: missing,
  /// forbidden, a directory, a device, or marked as read-only even where the user may write what is.
  explicit FileUpdate(const Path& path);

  const Path& path() const { return path_; }
  /// The file's size when it was opened, in bytes.
  uint64 size() const { return size_; }
  /// Has the file for this object alone, among those that ask for that, as long as it lives.
  /// Whoever replaces the file by another one has to hold the lock until that is done.
  /// @throws Exceptions::IOError when another object, of this process or another one, has it, or when the path leads to
  /// another file by now.
  void lock();
  /// @throws Exceptions::IOError when the bytes would go past the file's size, and nothing is written then, or when the
  /// system does not take them; how many it took is open then.
  void write(uint64 offset, const uint8* from, std::size_t size);
  /// Has the system write everything to the medium.
  /// @throws Exceptions::IOError when it cannot.
  void flush();

 private:
  Path path_;
  Stream stream_;
  uint64 size_ = 0;
};

/// Writes a file that did not exist before, to the medium.
class NewFile : public DataSink {
 public:
  /// Creates it.
  /// @throws Exceptions::IOError naming the path and the system's reason, also when there is such a file already.
  explicit NewFile(Path path);
  /// Removes the file again unless commit() succeeded.
  ~NewFile() override;
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  /// @throws Exceptions::IOError when the system does not take all the bytes (a full disk).
  void write(const uint8* from, std::size_t size) override;
  uint64 position() const override { return position_; }
  /// When this returns, the file and its name have reached the medium. It is called once, and last.
  /// @throws Exceptions::IOError when they have not.
  void commit();

 private:
  Path path_;
  Stream stream_;
  uint64 position_ = 0;
  bool isCommitted_ = false;
};

/// Removes a file, and its name from the medium.
/// @throws Exceptions::IOError when it cannot be removed, or the medium may still have the name.
void removeFromDisk(const Path& path);

}  // namespace Vantor::DataIO::File
