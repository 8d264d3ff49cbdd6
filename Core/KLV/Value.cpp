#include "Core/KLV/Value.h"

#include <string>

#include "Core/Platform/Exceptions.h"

namespace Vantor::KLV {

Value::Value(DataIO::DataSource& source, uint64 size) {
  source.require(size);
  if (size > bytes_.max_size()) {
    throw Exceptions::InvalidLength(
        DataIO::atOffset(source.position()) + "a value of " + std::to_string(size) + " bytes does not fit in memory",
        "Core/KLV/Value", __LINE__);
  }
  bytes_.resize(static_cast<std::size_t>(size));
  source.read(bytes_.data(), bytes_.size());
}

}  // namespace Vantor::KLV
