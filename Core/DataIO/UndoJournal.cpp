#include "Core/DataIO/UndoJournal.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>

#include "Core/DataIO/Crc64.h"
#include "Core/DataIO/Pieces.h"
#include "Core/Platform/Raise.h"

namespace Vantor::DataIO::File {

namespace {

namespace fs = std::filesystem;
using Exceptions::IOError;
using Exceptions::raise;

constexpr const char* kSuffix = ".vantor-journal";

/// A name, and the version of the format in 32 bits.
constexpr std::array<uint8, 12> kStart = {'v', 'a', 'n', 't', 'o', 'r', '-', 'j', 0, 0, 0, 2};
constexpr std::size_t kMagicSize = 8;
constexpr uint64 kHeaderSize = kStart.size() + sizeof(uint32) + 2 * sizeof(uint64);
constexpr uint64 kPlaceHeaderSize = 2 * sizeof(uint64);
constexpr uint64 kCheckSize = sizeof(uint64);
constexpr uint64 kSamples = 16;
constexpr uint64 kSampleSize = 8192;

/// A complete journal, as the places of its parts.
struct Journal {
  struct Place {
    uint64 offset = 0;  ///< in the file
    uint64 size = 0;
    uint64 oldBytes = 0;  ///< where they are in the journal; the new ones are behind them
  };
  uint64 fileSize = 0;
  uint64 surroundings = 0;
  std::vector<Place> places;
};

/// Adds what it writes to a check.
class CheckedSink : public DataSink {
 public:
  explicit CheckedSink(DataSink& sink) : sink_(sink) {}
  void write(const uint8* from, std::size_t size) override {
    sink_.write(from, size);
    check_.write(from, size);
  }
  uint64 position() const override { return sink_.position(); }
  uint64 check() const { return check_.value(); }

 private:
  DataSink& sink_;
  Crc64 check_;
};

/// Zeroes the part of the bytes at an offset that another run covers.
void blank(Bytes& bytes, uint64 offset, uint64 otherOffset, uint64 otherSize) {
  const uint64 from = std::clamp(otherOffset, offset, offset + bytes.size()) - offset;
  const uint64 to = std::clamp(otherOffset + otherSize, offset, offset + bytes.size()) - offset;
  std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(from), bytes.begin() + static_cast<std::ptrdiff_t>(to),
            uint8{0});
}

/// The check of evenly spaced samples, the last of which ends with the file, without the bytes in the places.
uint64 checkSurroundings(SeekableSource& file, const std::vector<Journal::Place>& places) {
  const uint64 size = std::min(file.size(), kSampleSize);
  Crc64 check;
  for (uint64 i = 0; i < kSamples; ++i) {
    const uint64 offset = (file.size() - size) - (file.size() - size) / (kSamples - 1) * i;
    Bytes sample = readPiece(file, offset, size);
    for (const auto& place : places) blank(sample, offset, place.offset, place.size);
    check.write(sample.data(), sample.size());
  }
  return check.value();
}

std::vector<Journal::Place> placesOf(const std::vector<NewBytes>& changes) {
  std::vector<Journal::Place> places;
  places.reserve(changes.size());
  for (const auto& change : changes) places.push_back({change.offset, change.bytes.size(), 0});
  return places;
}

void writePlace(DataSink& sink, SeekableSource& file, const NewBytes& change) {
  writeBigEndian<uint64>(sink, change.offset);
  writeBigEndian<uint64>(sink, change.bytes.size());
  file.seek(change.offset);
  copyBytes(file, change.bytes.size(), sink);
  sink.write(change.bytes.data(), change.bytes.size());
}

/// How many bytes of the right start are there.
std::size_t rightStart(SeekableSource& source) {
  const Bytes start = readPiece(source, 0, std::min<uint64>(source.size(), kStart.size()));
  const auto wrong = std::mismatch(start.begin(), start.end(), kStart.begin()).first;
  return static_cast<std::size_t>(wrong - start.begin());
}

/// Whether the start of a journal is complete. When its writing was stopped, a part may be missing, or be zeros where
/// the file system knew the length but not the bytes.
/// @throws Exceptions::IOError when it is something else, which is not ours to remove.
bool hasStart(SeekableSource& source) {
  const std::size_t right = rightStart(source);
  const Bytes start = readPiece(source, 0, std::min<uint64>(source.size(), kStart.size()));
  if (right == kStart.size()) return true;
  if (std::all_of(start.begin() + static_cast<std::ptrdiff_t>(right), start.end(),
                  [](uint8 octet) { return octet == 0; }))
    return false;
  raise<IOError>(
      "cannot recover by '{}': {}", source.name(),
      right < kMagicSize ? "it is no journal; move it away" : "it is a journal of another version of this program");
}

bool hasRightCheck(SeekableSource& source) {
  if (source.size() < kHeaderSize + kCheckSize) return false;
  Crc64 check;
  source.seek(0);
  copyBytes(source, source.size() - kCheckSize, check);
  return readBigEndian<uint64>(source) == check.value();
}

/// Reads from the position of the source, which is behind both old and new bytes afterwards.
Journal::Place readPlace(SeekableSource& source) {
  Journal::Place place;
  place.offset = readBigEndian<uint64>(source);
  place.size = readBigEndian<uint64>(source);
  place.oldBytes = source.position();
  source.skip(place.size);
  source.skip(place.size);
  return place;
}

bool hasOldOrNewBytes(const Journal::Place& place, SeekableSource& source, SeekableSource& file) {
  uint64 done = 0;
  bool isRight = true;
  forEachPiece(source, place.oldBytes, place.size, [&](const Bytes& old) {
    const Bytes changed = readPiece(source, place.oldBytes + place.size + done, old.size());
    const Bytes present = readPiece(file, place.offset + done, old.size());
    for (std::size_t i = 0; i < old.size(); ++i) isRight &= present[i] == old[i] || present[i] == changed[i];
    done += old.size();
  });
  return isRight;
}

/// Where the zeros at the end of a journal begin.
uint64 endOfContent(SeekableSource& journal) {
  uint64 end = 0;
  uint64 at = 0;
  forEachPiece(journal, 0, journal.size(), [&](const Bytes& piece) {
    const auto last = std::find_if(piece.rbegin(), piece.rend(), [](uint8 octet) { return octet != 0; });
    if (last != piece.rend()) end = at + static_cast<uint64>(piece.rend() - last);
    at += piece.size();
  });
  return end;
}

bool isWithin(uint64 offset, uint64 size, uint64 whole) { return offset <= whole && size <= whole - offset; }

/// Writes the journal of a change that has not begun, to the medium. None is left behind when this throws, as it does
/// when the file has another state by then.
void writeJournal(const Path& journal, const Path& file, const FileState& expected,
                  const std::vector<NewBytes>& changes) {
  FileDataSource old(file);
  NewFile output(journal);
  std::error_code ignored;
  fs::permissions(journal, fs::status(file).permissions(), ignored);
  CheckedSink sink(output);
  sink.write(kStart.data(), kStart.size());
  writeBigEndian<uint32>(sink, static_cast<uint32>(changes.size()));
  writeBigEndian<uint64>(sink, old.size());
  writeBigEndian<uint64>(sink, checkSurroundings(old, placesOf(changes)));
  for (const auto& change : changes) writePlace(sink, old, change);
  writeBigEndian<uint64>(output, sink.check());
  requireState(file, expected, "cannot change");
  output.commit();
}

/// None when the journal is incomplete.
/// @throws IOError when it is no journal, or one of another version.
std::optional<Journal> readJournal(SeekableSource& source) {
  if (!hasStart(source) || !hasRightCheck(source)) return std::nullopt;
  source.seek(kStart.size());
  const auto count = readBigEndian<uint32>(source);
  Journal journal;
  journal.fileSize = readBigEndian<uint64>(source);
  journal.surroundings = readBigEndian<uint64>(source);
  for (uint32 i = 0; i < count; ++i) journal.places.push_back(readPlace(source));
  return journal;
}

/// Whether a file of the journal's size is the one that was being changed: every byte in the places is the old or the
/// new one, and the bytes around them are as they were.
bool isFileOf(const Journal& journal, SeekableSource& source, SeekableSource& file) {
  const auto isInFile = [&](const Journal::Place& place) { return isWithin(place.offset, place.size, file.size()); };
  return std::all_of(journal.places.begin(), journal.places.end(), isInFile) &&
         checkSurroundings(file, journal.places) == journal.surroundings &&
         std::all_of(journal.places.begin(), journal.places.end(),
                     [&](const Journal::Place& place) { return hasOldOrNewBytes(place, source, file); });
}

/// Whether the file itself has all old bytes of an incomplete journal, so that nothing is lost without it.
bool hasNothingElse(SeekableSource& journal, SeekableSource& file) {
  const uint64 end = endOfContent(journal);
  const std::size_t start = rightStart(journal);
  if (start < kStart.size()) return end <= start;
  for (uint64 at = kHeaderSize; at + kPlaceHeaderSize < end;) {
    journal.seek(at);
    const auto offset = readBigEndian<uint64>(journal);
    const auto size = readBigEndian<uint64>(journal);
    if (!isWithin(offset, size, file.size())) return false;
    at += kPlaceHeaderSize;
    if (!haveSameBytes(journal, at, file, offset, std::min(size, end - at))) return false;
    at += 2 * size;
  }
  return true;
}

/// Behind symbolic links. The name itself for a file that is missing.
Path realPath(const Path& file) {
  std::error_code error;
  Path real = fs::canonical(file, error);
  if (error) real = fs::absolute(file, error);
  return error ? file : real;
}

Path journalOf(Path realFile) { return realFile += kSuffix; }

/// False where the journal's name would be too long.
bool isThere(const Path& journal) {
  std::error_code error;
  return fs::exists(journal, error);
}

/// Writes only what differs, so that bytes which were never changed need not be writable.
void putBack(FileDataSource& journal, const Journal::Place& place, FileDataSource& present, FileUpdate& file) {
  uint64 offset = place.offset;
  forEachPiece(journal, place.oldBytes, place.size, [&](const Bytes& old) {
    if (readPiece(present, offset, old.size()) != old) file.write(offset, old.data(), old.size());
    offset += old.size();
  });
}

[[noreturn]] void refuseRecovery(const FileUpdate& file, const std::string& reason) {
  raise<IOError>("cannot recover '{}': {}; to keep it as it is, remove the journal '{}'", file.path().u8string(),
                 reason, journalOf(file.path()).u8string());
}

/// Returns false, and does nothing, when the change had not begun to write the file.
bool putBack(const Path& journalFile, FileUpdate& file) {
  FileDataSource source(journalFile);
  FileDataSource present(file.path());
  const auto journal = readJournal(source);
  if (!journal) {
    if (hasNothingElse(source, present)) return false;
    refuseRecovery(file, "its journal is damaged, and the file may be half changed");
  }
  if (journal->fileSize != file.size()) {
    refuseRecovery(file, "it has " + std::to_string(file.size()) + " bytes, and had " +
                             std::to_string(journal->fileSize) + " when its journal was written");
  }
  if (!isFileOf(*journal, source, present)) {
    refuseRecovery(file, "it is not the file whose change was stopped, or was changed since");
  }
  for (const auto& place : journal->places) putBack(source, place, present, file);
  file.flush();
  return true;
}

void requireNoJournal(const Path& realFile) {
  if (!isThere(journalOf(realFile))) return;
  raise<IOError>("cannot change '{}': an earlier change was stopped; recover it first, from '{}'", realFile.u8string(),
                 journalOf(realFile).u8string());
}

void requireFile(const Path& realFile) {
  std::error_code error;
  const auto status = fs::status(realFile, error);
  if (fs::is_regular_file(status)) return;
  const Path journal = journalOf(realFile);
  if (!fs::exists(status) && isThere(journal)) {
    raise<IOError>("cannot recover '{}': the file is gone; put it back, or remove '{}', which has old bytes of it",
                   realFile.u8string(), journal.u8string());
  }
  raise<IOError>("cannot recover '{}': {}", realFile.u8string(),
                 fs::exists(status) ? "it is no regular file" : "there is no such file");
}

void endChange(const Path& realFile) {
  try {
    removeFromDisk(journalOf(realFile));
  } catch (const IOError& error) {
    raise<IOError>(
        "the file has been changed, but has its journal still: '{}': {}; remove the journal to keep the change, or "
        "recover the file to undo it",
        realFile.u8string(), error.message());
  }
}

/// After a change threw: goes back, and reports both.
[[noreturn]] void undo(FileUpdate& file, const char* failure) {
  try {
    putBack(journalOf(file.path()), file);
    removeFromDisk(journalOf(file.path()));
  } catch (const std::exception& error) {
    raise<IOError>("{}; recover the file before anything else, as that has failed: {}", failure, error.what());
  }
  raise<IOError>("{}; the file is as it was", failure);
}

}  // namespace

Path journalPath(const Path& file) { return journalOf(realPath(file)); }

bool hasJournal(const Path& file) { return isThere(journalPath(file)); }

void changeInPlace(const Path& file, const FileState& expected, const std::vector<NewBytes>& changes,
                   const std::function<void(FileUpdate&)>& write) {
  FileUpdate update(realPath(file));
  update.lock();  // before looking for a journal, so that no other process takes ours for that of a stopped change
  requireNoJournal(update.path());
  requireOneName(update.path());
  writeJournal(journalOf(update.path()), update.path(), expected, changes);
  try {
    if (write) {
      write(update);
    } else {
      for (const auto& change : changes) update.write(change.offset, change.bytes.data(), change.bytes.size());
    }
    update.flush();
  } catch (const std::exception& error) {
    undo(update, error.what());
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
  if (!isThere(journal)) return Recovery::kNoJournal;  // it belonged to a change that is done by now
  const bool isRestored = putBack(journal, update);
  removeFromDisk(journal);
  return isRestored ? Recovery::kRestored : Recovery::kNeverBegun;
}

}  // namespace Vantor::DataIO::File
