#include "Core/Metadata/DarkMetadataSet.h"

#include "Core/KLV/BERLength.h"

namespace Vantor {

DarkMetadataSet::DarkMetadataSet(const KLV::Key& key, uint8 berOctetCount, KLV::Value value)
    : key_(key), berLength_(berOctetCount), value_(std::move(value)) {}

void DarkMetadataSet::serialize(DataIO::DataSink& sink) const {
  sink.write(key_.rawBuffer(), KLV::Key::kSize);
  // A caller may give a count that no length field has; it is kept, but not written.
  KLV::writeBERLength(sink, value_.serializedSize(), berLength_ <= KLV::kMaxBEROctets ? berLength_ : uint8{0});
  sink.write(value_.rawBuffer(), value_.serializedSize());
}

}  // namespace Vantor
