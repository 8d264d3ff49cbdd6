#pragma once

#include <cstddef>
#include <vector>

#include "Core/DataIO/DataSource.h"
#include "Core/Platform/Containers.h"

namespace Vantor::DataIO {

/// Reads a source that only goes forward, and can begin anew: keeps the bytes that were read, but not those that were
/// skipped. Memory is in proportion to the bytes that were read.
class KeptSource : public DataSource {
 public:
  /// @param source  stands at its start; outlives this object, and nothing else reads it.
  explicit KeptSource(DataSource& source) : source_(source), start_(source.position()), position_(start_) {}
  KeptSource(const KeptSource&) = delete;
  KeptSource& operator=(const KeptSource&) = delete;

  /// Goes back to where the source stood at first.
  void rewind() { position_ = start_; }
  /// Goes to an offset that does not lie before the start: back, or on, which reads and keeps what lies between.
  /// @return false when the source ends before the offset; it then stands at the end.
  bool goTo(uint64 offset);

  uint64 position() const override { return position_; }
  uint64 remaining() const override;
  /// @throws Exceptions::ParseError when fewer bytes are left; those are kept, and the position is behind them.
  /// Exceptions::IOError for bytes that were skipped before.
  void read(uint8* to, std::size_t size) override;
  std::size_t readUpTo(uint8* to, std::size_t size) override;
  /// Throws as the source, and is where that ends then.
  void skip(uint64 size) override;

 private:
  struct Run {
    uint64 offset;
    Bytes bytes;
    uint64 end() const { return offset + bytes.size(); }
  };

  std::size_t readKept(uint8* to, std::size_t size);
  std::size_t readNew(uint8* to, std::size_t size);
  void keep(const uint8* bytes, std::size_t size);

  DataSource& source_;
  uint64 start_;
  uint64 position_;
  std::vector<Run> runs_;  // ascending; what lies between two was skipped
};

}  // namespace Vantor::DataIO
