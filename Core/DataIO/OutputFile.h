#pragma once

#include <cstddef>

#include "Core/DataIO/DataSink.h"
#include "Core/DataIO/System.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Types.h"

namespace Vantor::DataIO::File {

/// A file that is written from front to back, and deleted unless it is kept; the base of AtomicFile and NewFile.
class OutputFile : public DataSink {
 public:
  /// Closes the file; removes it unless it is kept.
  ~OutputFile() override;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// @throws Exceptions::IOError when the system does not take all the bytes (a full disk), or after the commit.
  void write(const uint8* from, std::size_t size) override;
  uint64 position() const override { return position_; }

 protected:
  /// @param name  how messages name the file.
  explicit OutputFile(Path name);

  const Path& name() const { return name_; }
  /// The file to be deleted; empty when there is none.
  const Path& vanishing() const { return vanishing_; }
  /// Creates a new file, to be deleted unless it is kept. False and `errno` when it fails.
  bool create(const Path& file);
  /// Opens what exists already, and is never deleted.
  bool open(const Path& file);
  /// Flushes everything to the system, and on request to the medium.
  /// @throws Exceptions::IOError when that fails, when a write has failed, or when the file is closed already.
  void close(bool toMedium);
  void keep() { vanishing_.clear(); }

 private:
  Path name_;
  Path vanishing_;
  Stream stream_;
  uint64 position_ = 0;
};

}  // namespace Vantor::DataIO::File
