#include "Core/DataIO/JournalFormat.h"

#include <algorithm>
#include <array>

#include "Core/DataIO/Crc64.h"
#include "Core/DataIO/Pieces.h"
#include "Core/Platform/Raise.h"

namespace Vantor::DataIO::File {

namespace {

using Exceptions::IOError;
using Exceptions::raise;

using Start = std::array<uint8, 12>;
/// A name, and the version of the format in 32 bits.
constexpr Start kStart = {'v', 'a', 'n', 't', 'o', 'r', '-', 'j', 0, 0, 0, 2};
/// The same for a file that may grow.
constexpr Start kGrowingStart = {'v', 'a', 'n', 't', 'o', 'r', '-', 'j', 0, 0, 0, 3};
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

/// The check of evenly spaced samples, without the bytes in the places.
/// @param fileSize  where the last sample ends.
uint64 checkSurroundings(SeekableSource& file, uint64 fileSize, const std::vector<Journal::Place>& places) {
  const uint64 size = std::min(fileSize, kSampleSize);
  Crc64 check;
  for (uint64 i = 0; i < kSamples; ++i) {
    const uint64 offset = (fileSize - size) - (fileSize - size) / (kSamples - 1) * i;
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

/// How many bytes of a right start are there.
std::size_t rightStart(SeekableSource& source) {
  const Bytes start = readPiece(source, 0, std::min<uint64>(source.size(), kStart.size()));
  const auto rightOf = [&start](const Start& right) {
    return std::mismatch(start.begin(), start.end(), right.begin()).first - start.begin();
  };
  return static_cast<std::size_t>(std::max(rightOf(kStart), rightOf(kGrowingStart)));
}

/// Whether the start of a journal is complete. A part may be missing, or be zeros.
/// @throws Exceptions::IOError when it is something else.
bool hasStart(SeekableSource& source) {
  const std::size_t right = rightStart(source);
  const Bytes start = readPiece(source, 0, std::min<uint64>(source.size(), kStart.size()));
  if (right == kStart.size()) return true;
  const auto isZero = [](uint8 octet) { return octet == 0; };
  if (std::all_of(start.begin() + static_cast<std::ptrdiff_t>(right), start.end(), isZero)) return false;
  if (right < kMagicSize) raise<IOError>("'{}' is no journal of a change; move it away", source.name());
  raise<IOError>("'{}' is a journal of another version of this program", source.name());
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

/// What is so of every byte that was looked at.
struct Seen {
  bool isOld = true;
  bool isNew = true;
  bool isEither = true;
};

void look(const Journal::Place& place, SeekableSource& source, SeekableSource& file, Seen& seen) {
  uint64 done = 0;
  forEachPiece(source, place.oldBytes, place.size, [&](const Bytes& old) {
    const Bytes changed = readPiece(source, place.oldBytes + place.size + done, old.size());
    const Bytes present = readPiece(file, place.offset + done, old.size());
    for (std::size_t i = 0; i < old.size(); ++i) {
      const bool isOld = present[i] == old[i], isNew = present[i] == changed[i];
      seen.isOld &= isOld;
      seen.isNew &= isNew;
      seen.isEither &= isOld || isNew;
    }
    done += old.size();
  });
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

void writeJournal(DataSink& output, SeekableSource& file, const std::vector<NewBytes>& changes, Growth growth) {
  CheckedSink sink(output);
  sink.write((growth == Growth::kAllowed ? kGrowingStart : kStart).data(), kStart.size());
  writeBigEndian<uint32>(sink, static_cast<uint32>(changes.size()));
  writeBigEndian<uint64>(sink, file.size());
  writeBigEndian<uint64>(sink, checkSurroundings(file, file.size(), placesOf(changes)));
  for (const auto& change : changes) writePlace(sink, file, change);
  writeBigEndian<uint64>(output, sink.check());
}

std::optional<Journal> readJournal(SeekableSource& source) {
  if (!hasStart(source) || !hasRightCheck(source)) return std::nullopt;
  Journal journal;
  source.seek(kStart.size() - 1);
  if (readBigEndian<uint8>(source) == kGrowingStart.back()) journal.growth = Growth::kAllowed;
  const auto count = readBigEndian<uint32>(source);
  journal.fileSize = readBigEndian<uint64>(source);
  journal.surroundings = readBigEndian<uint64>(source);
  for (uint32 i = 0; i < count; ++i) journal.places.push_back(readPlace(source));
  return journal;
}

PlaceBytes bytesInPlaces(const Journal& journal, SeekableSource& source, SeekableSource& file) {
  const auto isInFile = [&](const Journal::Place& place) { return isWithin(place.offset, place.size, file.size()); };
  if (!journal.allowsSize(file.size()) || !std::all_of(journal.places.begin(), journal.places.end(), isInFile) ||
      checkSurroundings(file, journal.fileSize, journal.places) != journal.surroundings)
    return PlaceBytes::kOther;
  Seen seen;
  for (const auto& place : journal.places) look(place, source, file, seen);
  if (seen.isOld) return PlaceBytes::kOld;
  if (seen.isNew) return PlaceBytes::kNew;
  return seen.isEither ? PlaceBytes::kMixed : PlaceBytes::kOther;
}

bool hasBytesLeft(SeekableSource& journal, SeekableSource& file) {
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
