#include "Core/DataIO/StreamSource.h"

#include <cerrno>
#include <utility>

#include "Core/Platform/Raise.h"

namespace Vantor::DataIO::File {

StreamSource::StreamSource(Stream stream, std::string name) : stream_(std::move(stream)), name_(std::move(name)) {}

std::size_t StreamSource::receive(uint8* to, std::size_t size) {
  errno = 0;
  const std::size_t received = std::fread(to, 1, size, stream_.get());
  if (received != 0 || std::ferror(stream_.get()) == 0) return received;
  Exceptions::raise<Exceptions::IOError>("at byte offset {}: cannot read '{}': {}", position(), name_,
                                         systemReason(errno));
}

}  // namespace Vantor::DataIO::File
