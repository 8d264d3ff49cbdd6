#pragma once

#include <algorithm>
#include <utility>

#include "Core/DataIO/ForwardSource.h"
#include "Core/Platform/Containers.h"

namespace Vantor::DataIO {

/// Bytes that arrive a few at a time, as from a connection.
class ReceivedBytes : public ForwardSource {
 public:
  explicit ReceivedBytes(Bytes bytes, std::size_t most = 5) : bytes_(std::move(bytes)), most_(most) {}

 protected:
  std::size_t receive(uint8* to, std::size_t size) override {
    const std::size_t received = std::min({size, most_, bytes_.size() - static_cast<std::size_t>(position())});
    std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(position()), received, to);
    return received;
  }

 private:
  Bytes bytes_;
  std::size_t most_;
};

}  // namespace Vantor::DataIO
