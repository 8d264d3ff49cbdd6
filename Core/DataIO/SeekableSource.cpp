#include "Core/DataIO/SeekableSource.h"

#include "Core/Platform/Raise.h"

namespace Vantor::DataIO {

void SeekableSource::seek(uint64 offset) {
  if (offset > size()) {
    Exceptions::raise<Exceptions::ParseError>("at byte offset {}: expected an offset within '{}', which has {} bytes",
                                              offset, name(), size());
  }
  position_ = offset;
}

void SeekableSource::read(uint8* to, std::size_t size) {
  require(size);
  if (size == 0) return;
  readAt(position_, to, size);
  position_ += size;
}

void SeekableSource::skip(uint64 size) {
  require(size);
  position_ += size;
}

}  // namespace Vantor::DataIO
