#pragma once

#include <string>

#include "Core/DataIO/DataSource.h"

namespace Vantor::DataIO {

/// Bytes that are read from any offset: of a file, of memory, or of a host program. A host implements name(), size()
/// and readAt().
class SeekableSource : public DataSource {
 public:
  /// How messages name the source, in UTF-8: a path, or what users know it by.
  virtual std::string name() const = 0;
  /// In bytes; the same as long as the source lives.
  virtual uint64 size() const = 0;
  /// Goes to `offset` bytes from the start; `size()` itself is allowed.
  /// @throws Exceptions::ParseError when the offset lies behind the end; the position is unchanged then.
  void seek(uint64 offset);

  uint64 position() const final { return position_; }
  uint64 remaining() const final { return size() - position_; }
  void read(uint8* to, std::size_t size) final;
  void skip(uint64 size) final;

 protected:
  /// Copies `size` bytes from `offset` on. They lie within the source, and there is at least one.
  /// @throws Exceptions::IOError when the medium cannot deliver them.
  virtual void readAt(uint64 offset, uint8* to, std::size_t size) = 0;

 private:
  uint64 position_ = 0;
};

}  // namespace Vantor::DataIO
