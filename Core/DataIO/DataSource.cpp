#include "Core/DataIO/DataSource.h"

#include <algorithm>

#include "Core/Platform/Raise.h"

namespace Vantor::DataIO {

std::size_t DataSource::readUpTo(uint8* to, std::size_t size) {
  const auto available = static_cast<std::size_t>(std::min<uint64>(size, remaining()));
  read(to, available);
  return available;
}

void DataSource::require(uint64 size) const {
  if (size <= remaining()) return;
  Exceptions::raise<Exceptions::ParseError>("at byte offset {}: expected {} more bytes, found {}", position(), size,
                                            remaining());
}

}  // namespace Vantor::DataIO
