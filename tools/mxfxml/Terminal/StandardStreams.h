#pragma once

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>

#include "Core/DataIO/DataSink.h"
#include "Core/Platform/Path.h"

namespace Vantor::Tool {

/// The program that reads standard output has ended, as `head` does when it has enough: no error, but nothing more to
/// do.
class ReaderGone : public std::runtime_error {
 public:
  ReaderGone() : std::runtime_error("standard output has no reader any more") {}
};

/// Writes everything and makes sure that the system took it.
/// @throws ReaderGone; OtherFileError with the system's reason, such as a full disk or a closed stream.
void writeStandardOutput(const std::string& bytes);

/// The same piece by piece, gathered into larger ones.
class StandardOutput : public DataIO::DataSink {
 public:
  void write(const uint8* from, std::size_t size) override;
  uint64 position() const override { return written_ + pending_.size(); }
  /// Writes what is gathered. To be called at the end.
  void finish();

 private:
  std::string pending_;
  uint64 written_ = 0;
};

/// Writes a file that appears whole or not at all, or standard output.
/// @param file  none for standard output.
/// @throws what `DataIO::File::AtomicFile` and `writeStandardOutput` throw.
void writeOutput(const std::optional<Path>& file, const std::function<void(DataIO::DataSink&)>& write);
/// The same for bytes.
void writeOutput(const std::optional<Path>& file, const std::string& bytes);

}  // namespace Vantor::Tool
