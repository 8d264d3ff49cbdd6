#include "Core/DataIO/OneState.h"

#include <algorithm>
#include <chrono>

#include "Core/DataIO/BigEndian.h"
#include "Core/Platform/Raise.h"

namespace Vantor::DataIO::File {

namespace {

/// Longer than the ticks by which file systems take the time.
constexpr std::chrono::milliseconds kMoment{20};

}  // namespace

WatchedSource::WatchedSource(const Path& path, uint64 most) : source_(path), size_(std::min(most, source_.size())) {}

void WatchedSource::readAt(uint64 offset, uint8* to, std::size_t size) {
  source_.seek(offset);
  source_.read(to, size);
  writeBigEndian<uint64>(check_, offset);
  check_.write(to, size);
}

bool wasJustWritten(const FileState& state) {
  return state.modified > std::filesystem::file_time_type::clock::now() - kMoment;
}

void requireSameBytes(const Path& path, const WatchedSource& first, const WatchedSource& second) {
  if (first.check() == second.check()) return;
  Exceptions::raise<Exceptions::IOError>(
      "cannot read '{}': another program is writing what is read of it at the moment; try again later",
      Platform::pathToUTF8(path));
}

}  // namespace Vantor::DataIO::File
