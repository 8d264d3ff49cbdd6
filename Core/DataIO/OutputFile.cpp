#include "Core/DataIO/OutputFile.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include "Core/Platform/Path.h"
#include "Core/Platform/Raise.h"

namespace Vantor::DataIO::File {

using Exceptions::IOError;
using Exceptions::raise;

OutputFile::OutputFile(Path name) : name_(std::move(name)) {}

OutputFile::~OutputFile() {
  stream_.reset();
  std::error_code ignored;
  if (!vanishing_.empty()) std::filesystem::remove(vanishing_, ignored);
}

bool OutputFile::create(const Path& file) {
  stream_.reset(openStream(file, "wbx"));
  if (stream_) vanishing_ = file;
  return stream_ != nullptr;
}

bool OutputFile::open(const Path& file) {
  stream_.reset(openStream(file, "wb"));
  return stream_ != nullptr;
}

void OutputFile::write(const uint8* from, std::size_t size) {
  if (!stream_) raise<IOError>("cannot write '{}': it has been closed", Platform::pathToUTF8(name_));
  errno = 0;
  if (size != 0 && std::fwrite(from, 1, size, stream_.get()) != size) {
    raise<IOError>("at byte offset {}: cannot write '{}': {}", position_, Platform::pathToUTF8(name_),
                   systemReason(errno));
  }
  position_ += size;
}

void OutputFile::close(bool toMedium) {
  if (!stream_) raise<IOError>("cannot finish '{}': it has been closed", Platform::pathToUTF8(name_));
  // A write that failed earlier must not be forgotten just because closing succeeds.
  if (std::ferror(stream_.get()) != 0)
    raise<IOError>("cannot finish '{}': a write failed", Platform::pathToUTF8(name_));
  if (toMedium && !flushToDisk(stream_.get())) {
    raise<IOError>("cannot finish '{}': {}", Platform::pathToUTF8(name_), systemReason(errno));
  }
  errno = 0;
  if (std::fclose(stream_.release()) != 0) {
    raise<IOError>("cannot finish '{}': {}", Platform::pathToUTF8(name_), systemReason(errno));
  }
}

}  // namespace Vantor::DataIO::File
