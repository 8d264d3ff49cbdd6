#include "Core/DataIO/ForwardSource.h"

#include <algorithm>

#include "Core/Platform/Raise.h"

namespace Vantor::DataIO {

void ForwardSource::read(uint8* to, std::size_t size) {
  const uint64 offset = position_;
  const std::size_t found = readUpTo(to, size);
  if (found == size) return;
  Exceptions::raise<Exceptions::ParseError>("at byte offset {}: expected {} more bytes, found {}", offset, size, found);
}

std::size_t ForwardSource::readUpTo(uint8* to, std::size_t size) {
  std::size_t done = 0;
  while (done < size) {
    const std::size_t received = receive(to + done, size - done);
    if (received == 0) break;
    done += received;
    position_ += received;
  }
  return done;
}

void ForwardSource::skip(uint64 size) {
  uint8 passed[4096];
  for (uint64 left = size; left != 0; left -= std::min<uint64>(left, sizeof passed)) {
    read(passed, static_cast<std::size_t>(std::min<uint64>(left, sizeof passed)));
  }
}

}  // namespace Vantor::DataIO
