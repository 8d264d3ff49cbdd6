#include "Core/KLV/Value.h"

#include <algorithm>

#include "Core/Platform/Raise.h"

namespace Vantor::KLV {

namespace {

/// How much of a value is allocated at a time for a source of unknown size.
constexpr std::size_t kFirstPiece = std::size_t{1} << 20;

}  // namespace

Value::Value(DataIO::DataSource& source, uint64 size) {
  source.require(size);
  if (size > bytes_.max_size()) {
    Exceptions::raise<Exceptions::InvalidLength>("at byte offset {}: a value of {} bytes does not fit in memory",
                                                 source.position(), size);
  }
  std::size_t piece = source.remaining() == DataIO::kUnknownSize ? kFirstPiece : static_cast<std::size_t>(size);
  for (std::size_t done = 0; done < size; piece = done) {
    bytes_.resize(static_cast<std::size_t>(std::min<uint64>(size, uint64{done} + piece)));
    source.read(bytes_.data() + done, bytes_.size() - done);
    done = bytes_.size();
  }
}

}  // namespace Vantor::KLV
