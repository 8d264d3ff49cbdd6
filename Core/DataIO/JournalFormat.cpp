#include "Core/DataIO/JournalFormat.h"

#include <algorithm>
#include <array>

#include "Core/DataIO/Crc64.h"
#include "Core/DataIO/FileUpdate.h"
#include "Core/DataIO/Pieces.h"
#include "Core/Platform/Raise.h"

namespace Vantor::DataIO::File {

namespace {

namespace fs = std::filesystem;

/// A name, and the version of the format in 32 bits.
constexpr std::array<uint8, 12> kStart = {'v', 'a', 'n', 't', 'o', 'r', '-', 'j', 0, 0, 0, 2};
constexpr std::size_t kMagicSize = 8;
constexpr uint64 kHeaderSize = kStart.size() + sizeof(uint32) + 2 * sizeof(uint64);
constexpr uint64 kPlaceHeaderSize = 2 * sizeof(uint64);
constexpr uint64 kCheckSize = sizeof(uint64);
constexpr uint64 kSamples = 16;
constexpr uint64 kSampleSize = 8192;

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
    check.add(sample.data(), sample.size());
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
  Exceptions::raise<Exceptions::IOError>(
      "cannot recover by '{}': {}", source.name(),
      right < kMagicSize ? "it is no journal; move it away" : "it is a journal of another version of this program");
}

bool hasRightCheck(SeekableSource& source) {
  if (source.size() < kHeaderSize + kCheckSize) return false;
  Crc64 check;
  forEachPiece(source, 0, source.size() - kCheckSize,
               [&](const Bytes& piece) { check.add(piece.data(), piece.size()); });
  source.seek(source.size() - kCheckSize);
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

}  // namespace

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

bool isFileOf(const Journal& journal, SeekableSource& source, SeekableSource& file) {
  return checkSurroundings(file, journal.places) == journal.surroundings &&
         std::all_of(journal.places.begin(), journal.places.end(),
                     [&](const Journal::Place& place) { return hasOldOrNewBytes(place, source, file); });
}

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

}  // namespace Vantor::DataIO::File
