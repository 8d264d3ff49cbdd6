#include "Core/Types/ByteString.h"

namespace Vantor::Types {

ByteStringBase::ByteStringBase(Bytes octets) : octets_(std::move(octets)) { requireEncodable(octets_.size()); }

ByteStringBase::ByteStringBase(const Bytes& head, const uint8* rest, std::size_t size) {
  requireEncodable(uint64{head.size()} + size);
  octets_.reserve(head.size() + size);
  octets_.assign(head.begin(), head.end());
  octets_.insert(octets_.end(), rest, rest + size);
}

}  // namespace Vantor::Types
