#pragma once

#include "Core/DataIO/DataSink.h"
#include "Core/KLV/Key.h"
#include "Core/KLV/Value.h"

namespace Vantor {

/// A KLV of the header metadata that is neither a known set nor a dark group: key, length octets and value, as read.
class DarkMetadataSet : public Platform::HeapObject {
 public:
  /// @param berOctetCount  octets of the BER length field; 0 leaves the choice to the writer.
  DarkMetadataSet(const KLV::Key& key, uint8 berOctetCount, KLV::Value value);

  const KLV::Key& key() const { return key_; }
  uint8 berLength() const { return berLength_; }
  const KLV::Value& value() const { return value_; }

  void serialize(DataIO::DataSink& sink) const;

 private:
  friend class PartitionMetadata;

  KLV::Key key_;
  uint8 berLength_;
  bool isRemoved_ = false;
  KLV::Value value_;
};

}  // namespace Vantor
