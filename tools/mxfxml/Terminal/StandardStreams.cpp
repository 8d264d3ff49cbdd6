#include "Terminal/StandardStreams.h"

#include <cerrno>
#include <cstdio>
#include <system_error>

#include "Core/DataIO/File.h"
#include "Terminal/ErrorText.h"
#include "Terminal/StandardInput.h"

namespace Vantor::Tool {

void writeStandardOutput(const std::string& bytes) {
  errno = 0;
  const bool isWritten = std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size();
  if (isWritten && std::fflush(stdout) == 0) return;
  if (errno == EPIPE) throw ReaderGone();
  throw OtherFileError("cannot write to standard output: " + std::generic_category().message(errno));
}

void StandardOutput::write(const uint8* from, std::size_t size) {
  constexpr std::size_t kMostPending = std::size_t{1} << 16;
  pending_.append(reinterpret_cast<const char*>(from), size);
  if (pending_.size() > kMostPending) finish();
}

void StandardOutput::finish() {
  writeStandardOutput(pending_);
  written_ += pending_.size();
  pending_.clear();
}

void writeOutput(const std::optional<Path>& file, const std::function<void(DataIO::DataSink&)>& write) {
  if (file && !isStandardOutput(*file)) {
    DataIO::File::AtomicFile output(*file);
    write(output);
    output.commit();
    return;
  }
  StandardOutput output;
  write(output);
  output.finish();
}

void writeOutput(const std::optional<Path>& file, const std::string& bytes) {
  writeOutput(file, [&bytes](DataIO::DataSink& sink) {
    sink.write(reinterpret_cast<const uint8*>(bytes.data()), bytes.size());
  });
}

}  // namespace Vantor::Tool
