#include "Core/DataIO/UndoJournal.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>

#include "Core/DataIO/Crc64.h"
#include "Core/Platform/Containers.h"

namespace Vantor::DataIO::File {

namespace {

namespace fs = std::filesystem;
using Exceptions::IOError;

constexpr const char* kSourceName = "Core/DataIO/UndoJournal";
constexpr const char* kSuffix = ".mxfxml-journal";
/// A name, and the version of the format in 32 bits.
constexpr std::array<uint8, 12> kStart = {'m', 'x', 'f', 'x', 'm', 'l', '-', 'j', 0, 0, 0, 1};
constexpr std::size_t kMagicSize = 8;
constexpr uint64 kCheckSize = sizeof(uint64);
constexpr uint64 kBufferSize = uint64{1} << 20;

[[noreturn]] void throwIOError(const std::string& failure, const Path& path, const std::string& reason, int line) {
  throw ioError(failure, path, reason, kSourceName, line);
}

/// Behind symbolic links. A file that is missing is where its name says.
Path realPath(const Path& file) {
  std::error_code error;
  Path real = fs::canonical(file, error);
  if (error) real = fs::absolute(file, error);
  return error ? file : real;
}

Path journalOf(Path realFile) { return realFile += kSuffix; }

/// There is none where it would have too long a name.
bool isThere(const Path& journal) {
  std::error_code error;
  return fs::exists(journal, error);
}

/// Hands over the next bytes of a source in pieces: `use(offset among these bytes, piece, its size)`.
template <class Use>
void forEachPiece(DataSource& source, uint64 size, Use&& use) {
  Bytes buffer(static_cast<std::size_t>(std::min(size, kBufferSize)));
  for (uint64 done = 0; done < size;) {
    const auto piece = static_cast<std::size_t>(std::min<uint64>(size - done, buffer.size()));
    source.read(buffer.data(), piece);
    use(done, buffer.data(), piece);
    done += piece;
  }
}

/// Adds what it writes to a check.
class CheckedSink : public DataSink {
 public:
  explicit CheckedSink(DataSink& sink) : sink_(sink) {}
  void write(const uint8* from, std::size_t size) override {
    sink_.write(from, size);
    check_.add(from, size);
  }
  uint64 position() const override { return sink_.position(); }
  uint64 check() const { return check_.value(); }

 private:
  DataSink& sink_;
  Crc64 check_;
};

void writePlace(DataSink& sink, FileDataSource& old, const Place& place) {
  writeBigEndian<uint64>(sink, place.offset);
  writeBigEndian<uint64>(sink, place.size);
  old.seek(place.offset);
  forEachPiece(old, place.size, [&](uint64, const uint8* piece, std::size_t size) { sink.write(piece, size); });
}

void writeJournal(const Path& realFile, const FileState& expected, const std::vector<Place>& places) {
  FileDataSource old(realFile);
  NewFile file(journalOf(realFile));
  std::error_code ignored;
  fs::permissions(journalOf(realFile), fs::status(realFile).permissions(), ignored);
  CheckedSink sink(file);
  sink.write(kStart.data(), kStart.size());
  writeBigEndian<uint32>(sink, static_cast<uint32>(places.size()));
  writeBigEndian<uint64>(sink, old.size());
  for (const auto& place : places) writePlace(sink, old, place);
  writeBigEndian<uint64>(file, sink.check());
  requireState(realFile, expected, "cannot change");
  file.commit();
}

struct Journal {
  struct SavedPlace {
    Place place;
    uint64 journalOffset = 0;  ///< of the old bytes
  };
  uint64 fileSize = 0;
  std::vector<SavedPlace> places;
};

/// Whether the whole start of a journal stands there, and not only what was of it when its writing was stopped; a file
/// system may have known its length by then, and have zeros in the place of bytes.
/// @throws Exceptions::IOError when it is something else, which is not ours to remove.
bool hasStart(FileDataSource& source) {
  std::array<uint8, kStart.size()> start{};
  source.read(start.data(), static_cast<std::size_t>(std::min<uint64>(source.size(), start.size())));
  const auto [wrong, expected] = std::mismatch(start.begin(), start.end(), kStart.begin());
  if (std::all_of(wrong, start.end(), [](uint8 octet) { return octet == 0; })) return wrong == start.end();
  throwIOError("cannot recover by", source.path(),
               static_cast<std::size_t>(expected - kStart.begin()) < kMagicSize
                   ? "it is no journal; move it away"
                   : "it is a journal of another version of this program",
               __LINE__);
}

bool hasRightCheck(FileDataSource& source) {
  if (source.size() < kStart.size() + kCheckSize) return false;
  Crc64 check;
  source.seek(0);
  forEachPiece(source, source.size() - kCheckSize,
               [&](uint64, const uint8* piece, std::size_t size) { check.add(piece, size); });
  return readBigEndian<uint64>(source) == check.value();
}

/// None when the journal is not whole.
std::optional<Journal> readJournal(FileDataSource& source) {
  if (!hasStart(source) || !hasRightCheck(source)) return std::nullopt;
  source.seek(kStart.size());
  const auto count = readBigEndian<uint32>(source);
  Journal journal;
  journal.fileSize = readBigEndian<uint64>(source);
  for (uint32 i = 0; i < count; ++i) {
    Journal::SavedPlace saved;
    saved.place.offset = readBigEndian<uint64>(source);
    saved.place.size = readBigEndian<uint64>(source);
    saved.journalOffset = source.position();
    source.skip(saved.place.size);
    journal.places.push_back(saved);
  }
  return journal;
}

/// Writes only what differs, so that bytes which were never changed need not be writable.
void putBack(FileDataSource& journal, const Journal::SavedPlace& saved, FileUpdate& file) {
  FileDataSource present(file.path());
  Bytes presentBytes;
  present.seek(saved.place.offset);
  journal.seek(saved.journalOffset);
  forEachPiece(journal, saved.place.size, [&](uint64 at, const uint8* old, std::size_t size) {
    presentBytes.resize(size);
    present.read(presentBytes.data(), size);
    if (!std::equal(old, old + size, presentBytes.begin())) file.write(saved.place.offset + at, old, size);
  });
}

/// Returns false, and does nothing, when the journal is not whole.
bool putBack(const Path& journalFile, FileUpdate& file) {
  FileDataSource source(journalFile);
  const auto journal = readJournal(source);
  if (!journal) return false;
  if (journal->fileSize != file.size()) {
    throwIOError("cannot recover", file.path(),
                 "it has " + std::to_string(file.size()) + " bytes, and had " + std::to_string(journal->fileSize) +
                     " when its journal was written; to keep it as it is, remove the journal",
                 __LINE__);
  }
  for (const auto& saved : journal->places) putBack(source, saved, file);
  file.flush();
  return true;
}

void requireNoJournal(const Path& realFile) {
  if (!isThere(journalOf(realFile))) return;
  throwIOError("cannot change", realFile,
               "an earlier change was stopped; recover it first, from '" + journalOf(realFile).u8string() + "'",
               __LINE__);
}

void requireFile(const Path& realFile) {
  std::error_code error;
  const auto status = fs::status(realFile, error);
  if (fs::is_regular_file(status)) return;
  const Path journal = journalOf(realFile);
  throwIOError("cannot recover", realFile,
               fs::exists(status) ? "it is no regular file"
               : isThere(journal)
                   ? "the file is gone; put it back, or remove '" + journal.u8string() + "', which has old bytes of it"
                   : "there is no such file",
               __LINE__);
}

void endChange(const Path& realFile) {
  try {
    removeFromDisk(journalOf(realFile));
  } catch (const IOError& error) {
    throwIOError("the file has been changed, but has its journal still:", realFile,
                 error.message() + "; remove the journal to keep the change, or recover the file to undo it", __LINE__);
  }
}

/// After a change threw: goes back, and tells how that went.
[[noreturn]] void undo(FileUpdate& file, const std::string& failure, int line) {
  try {
    putBack(journalOf(file.path()), file);
    removeFromDisk(journalOf(file.path()));
  } catch (const std::exception& error) {
    throw IOError(failure + "; recover the file before anything else, as that has failed: " + error.what(), kSourceName,
                  line);
  }
  throw IOError(failure + "; the file is as it was", kSourceName, line);
}

}  // namespace

Path journalPath(const Path& file) { return journalOf(realPath(file)); }

bool hasJournal(const Path& file) { return isThere(journalPath(file)); }

void changeInPlace(const Path& file, const FileState& expected, const std::vector<Place>& places,
                   const std::function<void(FileUpdate&)>& change) {
  FileUpdate update(realPath(file));
  update.lock();  // before looking for a journal, so that nobody takes ours for one of a stopped change
  requireNoJournal(update.path());
  requireOneName(update.path());
  writeJournal(update.path(), expected, places);
  try {
    change(update);
    update.flush();
  } catch (const std::exception& error) {
    undo(update, error.what(), __LINE__);
  }
  endChange(update.path());
}

Recovery recover(const Path& file) {
  const Path real = realPath(file);
  const Path journal = journalOf(real);
  requireFile(real);
  if (!isThere(journal)) return Recovery::kNoJournal;
  FileUpdate update(real);
  update.lock();
  if (!isThere(journal)) return Recovery::kNoJournal;  // of a change that was under way, and is done
  const bool isRestored = putBack(journal, update);
  removeFromDisk(journal);
  return isRestored ? Recovery::kRestored : Recovery::kNeverBegun;
}

}  // namespace Vantor::DataIO::File
