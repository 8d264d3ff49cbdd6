#pragma once

#include "Core/DataIO/DataSource.h"

namespace Vantor::DataIO {

/// Bytes of a pipe or a connection, whose number is unknown before the end. A host implements receive().
class ForwardSource : public DataSource {
 public:
  /// Counted from the first byte that was received.
  uint64 position() const final { return position_; }
  uint64 remaining() const final { return kUnknownSize; }
  /// The bytes that were left are lost when this throws.
  void read(uint8* to, std::size_t size) final;
  std::size_t readUpTo(uint8* to, std::size_t size) final;
  void skip(uint64 size) final;

 protected:
  /// Copies at least one of the next bytes and at most `size`, which is not 0. Waits until there are some.
  /// @return how many; 0 at the end.
  /// @throws Exceptions::IOError when the medium fails.
  virtual std::size_t receive(uint8* to, std::size_t size) = 0;

 private:
  uint64 position_ = 0;
};

}  // namespace Vantor::DataIO
