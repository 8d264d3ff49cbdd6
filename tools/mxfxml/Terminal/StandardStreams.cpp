#include "Terminal/StandardStreams.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <system_error>

#include "Core/DataIO/File.h"
#include "Terminal/ErrorText.h"
#include "Terminal/StandardInput.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace Vantor::Tool {

#ifdef _WIN32

void prepareStandardStreams() { _setmode(_fileno(stdout), _O_BINARY); }

#else

namespace {

// The system gives the lowest free number to the next file opened. Opening the null device for the other direction
// keeps the number of a closed stream from a file of ours, and makes writes to the stream fail.
void occupyIfClosed(int descriptor, int mode) {
  if (::fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) static_cast<void>(::open("/dev/null", mode));
}

}  // namespace

void prepareStandardStreams() {
  occupyIfClosed(STDIN_FILENO, O_WRONLY);
  occupyIfClosed(STDOUT_FILENO, O_RDONLY);
  occupyIfClosed(STDERR_FILENO, O_RDONLY);
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

#endif

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
