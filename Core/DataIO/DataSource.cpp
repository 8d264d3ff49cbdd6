#include "Core/DataIO/DataSource.h"

#include "Core/Platform/Exceptions.h"

namespace Vantor::DataIO {

std::string atOffset(uint64 offset) { return "at byte offset " + std::to_string(offset) + ": "; }

void DataSource::require(uint64 size) const {
  if (size <= remaining()) return;
  throw Exceptions::ParseError(
      atOffset(position()) + "expected " + std::to_string(size) + " more bytes, found " + std::to_string(remaining()),
      "Core/DataIO/DataSource", __LINE__);
}

}  // namespace Vantor::DataIO
