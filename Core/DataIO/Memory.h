#pragma once

#include <cstddef>
#include <string>

#include "Core/DataIO/DataSink.h"
#include "Core/DataIO/SeekableSource.h"
#include "Core/Platform/Containers.h"
#include "Core/Platform/Types.h"

namespace Vantor::DataIO::Memory {

/// Reads bytes that are in memory, such as those of one KLV.
class MemoryDataSource : public DataSource {
 public:
  /// @param bytes   may be null when `size` is 0; unless copied, they stay the caller's and outlive the source.
  /// @param copy    whether the source keeps its own copy.
  /// @param origin  what position() calls the first byte: where these bytes stand in their file.
  MemoryDataSource(const uint8* bytes, std::size_t size, bool copy = false, uint64 origin = 0);
  MemoryDataSource(const MemoryDataSource&) = delete;
  MemoryDataSource& operator=(const MemoryDataSource&) = delete;

  uint64 position() const override { return origin_ + consumed_; }
  uint64 remaining() const override { return size_ - consumed_; }
  void read(uint8* to, std::size_t size) override;
  void skip(uint64 size) override;

 private:
  Bytes copy_;
  const uint8* bytes_;
  std::size_t size_;
  std::size_t consumed_ = 0;
  uint64 origin_;
};

/// A file in memory.
class MemoryFile : public SeekableSource {
 public:
  /// Owns the bytes.
  /// @param name  how messages name the file.
  explicit MemoryFile(Bytes bytes, std::string name = "memory");
  /// The bytes stay the caller's and outlive the source; may be null when `size` is 0.
  MemoryFile(const uint8* bytes, std::size_t size, std::string name = "memory");
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  std::string name() const override { return name_; }
  uint64 size() const override { return size_; }

 protected:
  void readAt(uint64 offset, uint8* to, std::size_t size) override;

 private:
  Bytes own_;
  const uint8* bytes_;
  std::size_t size_;
  std::string name_;
};

/// Collects bytes in memory.
class MemoryDataSink : public DataSink {
 public:
  /// @param size  how many bytes are expected; memory for them is reserved, and more may be written.
  explicit MemoryDataSink(std::size_t size = 0);

  void write(const uint8* from, std::size_t size) override;
  uint64 position() const override { return bytes_.size(); }

  /// The bytes written so far; valid until the next write. May be null when nothing was written.
  const uint8* rawBuffer() const { return bytes_.data(); }
  std::size_t serializedSize() const { return bytes_.size(); }
  /// Hands over the bytes and leaves the sink empty.
  Bytes take();

 private:
  Bytes bytes_;
};

}  // namespace Vantor::DataIO::Memory
