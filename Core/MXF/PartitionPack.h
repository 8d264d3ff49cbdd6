#pragma once

#include <cstddef>
#include <vector>

#include "Core/DataIO/DataSink.h"
#include "Core/KLV/Keys.h"
#include "Core/Platform/Types.h"
#include "Core/Types/UniversalLabel.h"

namespace Vantor::MXF {

/// A partition pack, whose value has 88 bytes and 16 per essence container on the wire (ST 377-1). All offsets in it
/// are counted in bytes from the first byte of the header partition pack, so without the run-in.
struct PartitionPack {
  KLV::PartitionKind kind = KLV::PartitionKind::kHeader;
  KLV::PartitionStatus status = KLV::PartitionStatus::kOpenIncomplete;
  uint16 majorVersion = 0;
  uint16 minorVersion = 0;
  uint32 kagSize = 0;
  uint64 thisPartition = 0;
  uint64 previousPartition = 0;
  uint64 footerPartition = 0;  ///< 0 when the writer did not know it, or there is no footer
  uint64 headerByteCount = 0;  ///< of primer pack, metadata and the fill among and behind them; not of fill before
  uint64 indexByteCount = 0;
  uint32 indexSID = 0;
  uint64 bodyOffset = 0;
  uint32 bodySID = 0;
  Types::UniversalLabel operationalPattern;
  std::vector<Types::UniversalLabel> essenceContainers;
  /// The item size in the batch of essence containers; for an empty batch, files have any number.
  uint32 essenceContainerSize = Types::UniversalLabel::kSize;

  /// Names the numbers in wire order. They stand at the start of the value.
  template <class Self, class Fn>
  static void forEachNumber(Self& self, Fn&& fn) {
    fn(self.majorVersion);
    fn(self.minorVersion);
    fn(self.kagSize);
    fn(self.thisPartition);
    fn(self.previousPartition);
    fn(self.footerPartition);
    fn(self.headerByteCount);
    fn(self.indexByteCount);
    fn(self.indexSID);
    fn(self.bodyOffset);
    fn(self.bodySID);
  }

  /// Reads the value of a partition pack.
  /// @param key     gives kind and status.
  /// @param origin  the offset of the value's first byte in its file, for messages.
  /// @throws Exceptions::InvalidFormat when the key is not of a partition pack, Exceptions::ParseError with the offset
  /// when the value is cut short or the batch of essence containers does not fill the rest of it exactly; the batch's
  /// counts are checked before anything is allocated. An empty batch may name any item size.
  static PartitionPack parse(const KLV::Key& key, const uint8* value, std::size_t size, uint64 origin = 0);
  /// Writes the value: the bytes that parse() read.
  void render(DataIO::DataSink& sink) const;
};

/// The size of a value without essence containers, in bytes.
constexpr uint64 kPartitionPackSize = 88;

/// The longest value that is taken for a partition pack's, in bytes. It has room for 65,530 essence containers.
constexpr uint64 kMaxPartitionPackSize = uint64{1} << 20;

}  // namespace Vantor::MXF
