#pragma once

#include "Core/DataIO/Crc64.h"
#include "Core/DataIO/File.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Types.h"

/// Reading files that another program may be writing.
namespace Vantor::DataIO::File {

/// A file, or its first bytes, with a check of all that is read of it and where.
class WatchedSource : public SeekableSource {
 public:
  /// @throws as FileDataSource.
  explicit WatchedSource(const Path& path) : source_(path), size_(source_.size()) {}
  /// @param most  where it ends for its reader, as far as the file goes.
  WatchedSource(const Path& path, uint64 most);

  std::string name() const override { return source_.name(); }
  uint64 size() const override { return size_; }
  uint64 check() const { return check_.value(); }

 protected:
  void readAt(uint64 offset, uint8* to, std::size_t size) override;

 private:
  FileDataSource source_;
  uint64 size_;
  Crc64 check_;
};

/// @throws Exceptions::IOError naming the path when the readers have not read the same bytes.
void requireSameBytes(const Path& path, const WatchedSource& first, const WatchedSource& second);

/// Whether a file was written so shortly ago that a further change may leave it in the same state.
bool wasJustWritten(const FileState& state);

/// Reads a file as it is at one moment, although another program may be writing it.
///
/// When the file is in another state behind `read` than before, or was written a moment ago, so that its state may not
/// show that, `read` is called twice more, and has to read the same bytes both times. What a writer appends does not
/// count: the second time, the file ends where it ended the first time. A writer that pauses half-way is not noticed,
/// nor one that brings back the same earlier bytes for both times.
/// @param read  gets the file as a SeekableSource&, and has no effect but its result.
/// @return what `read` returned last.
/// @throws Exceptions::IOError naming the path when the bytes keep changing; what `read` throws, unless a later call
/// does not.
template <class Read>
auto readInOneState(const Path& path, Read&& read) {
  FileDataSource source(path);
  const FileState before = stateOf(path);
  const bool isFresh = wasJustWritten(before);
  const auto isChanged = [&] { return isFresh || source.size() != before.size || stateOf(path) != before; };
  try {
    auto result = read(static_cast<SeekableSource&>(source));
    if (!isChanged()) return result;
  } catch (const Exceptions::BaseException&) {
    if (!isChanged()) throw;
  }
  WatchedSource first(path);
  read(static_cast<SeekableSource&>(first));
  WatchedSource second(path, first.size());
  auto result = read(static_cast<SeekableSource&>(second));
  requireSameBytes(path, first, second);
  return result;
}

}  // namespace Vantor::DataIO::File
