#include "Core/Types/SimpleDataType.h"

#include <cstring>
#include <limits>

#include "Core/DataIO/DataSink.h"
#include "Core/Platform/Raise.h"

namespace Vantor::Types {

bool SimpleDataType::equals(const SimpleDataType& other) const {
  return identifier() == other.identifier() && hasSameValue(other);
}

bool SimpleDataType::hasSameValue(const SimpleDataType& other) const {
  return encodedSize() == other.encodedSize() && std::memcmp(rawBuffer(), other.rawBuffer(), encodedSize()) == 0;
}

void SimpleDataType::serialize(DataIO::DataSink& sink) const { sink.write(rawBuffer(), encodedSize()); }

void SimpleDataType::requireEncodable(uint64 octets) {
  if (octets <= std::numeric_limits<uint32>::max()) return;
  Exceptions::raise<Exceptions::InvalidLength>("A value cannot have {} octets, 4294967295 at most", octets);
}

const uint8* SimpleDataType::addressOf(const Bytes& octets) {
  // The address of an empty vector may be null, which memcpy and its like do not take.
  static constexpr uint8 kNothing = 0;
  return octets.empty() ? &kNothing : octets.data();
}

}  // namespace Vantor::Types
