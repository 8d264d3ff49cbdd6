#include "Core/DataIO/KeptSource.h"

#include <algorithm>

#include "Core/Platform/Raise.h"

namespace Vantor::DataIO {

using Exceptions::raise;

namespace {

constexpr uint64 kForwardPiece = uint64{1} << 16;

}  // namespace

bool KeptSource::goTo(uint64 offset) {
  position_ = std::min(offset, source_.position());
  while (position_ < offset) {
    Bytes piece(static_cast<std::size_t>(std::min(offset - position_, kForwardPiece)));
    if (readNew(piece.data(), piece.size()) == 0) return false;
  }
  return true;
}

uint64 KeptSource::remaining() const {
  const uint64 left = source_.remaining();
  return left == kUnknownSize ? kUnknownSize : source_.position() - position_ + left;
}

void KeptSource::read(uint8* to, std::size_t size) {
  const uint64 offset = position_;
  const std::size_t found = readUpTo(to, size);
  if (found == size) return;
  raise<Exceptions::ParseError>("at byte offset {}: expected {} more bytes, found {}", offset, size, found);
}

std::size_t KeptSource::readUpTo(uint8* to, std::size_t size) {
  std::size_t done = 0;
  while (done < size) {
    const bool isKept = position_ < source_.position();
    const std::size_t found = isKept ? readKept(to + done, size - done) : readNew(to + done, size - done);
    if (found == 0) break;
    done += found;
  }
  return done;
}

void KeptSource::skip(uint64 size) {
  const uint64 kept = std::min(size, source_.position() - position_);
  position_ += kept;
  if (kept == size) return;
  try {
    source_.skip(size - kept);
  } catch (...) {
    position_ = source_.position();
    throw;
  }
  position_ = source_.position();
}

std::size_t KeptSource::readKept(uint8* to, std::size_t size) {
  const auto behind = std::upper_bound(runs_.begin(), runs_.end(), position_,
                                       [](uint64 offset, const Run& run) { return offset < run.offset; });
  if (behind == runs_.begin() || (behind - 1)->end() <= position_) {
    raise<Exceptions::IOError>("at byte offset {}: these bytes were skipped, and cannot be read any more", position_);
  }
  const Run& run = *(behind - 1);
  const auto found = static_cast<std::size_t>(std::min<uint64>(size, run.end() - position_));
  std::copy_n(run.bytes.data() + (position_ - run.offset), found, to);
  position_ += found;
  return found;
}

std::size_t KeptSource::readNew(uint8* to, std::size_t size) {
  const std::size_t found = source_.readUpTo(to, size);
  keep(to, found);
  position_ += found;
  return found;
}

void KeptSource::keep(const uint8* bytes, std::size_t size) {
  if (size == 0) return;
  if (runs_.empty() || runs_.back().end() != position_) runs_.push_back({position_, {}});
  runs_.back().bytes.insert(runs_.back().bytes.end(), bytes, bytes + size);
}

}  // namespace Vantor::DataIO
