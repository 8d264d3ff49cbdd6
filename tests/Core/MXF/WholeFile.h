#pragma once

#include <fstream>
#include <iterator>
#include <vector>

#include "Core/MXF/FileStructure.h"
#include "Core/MXF/Fill.h"
#include "Core/MXF/KLVHeader.h"
#include "Core/MXF/MetadataRoom.h"
#include "tests/Core/MXF/MXFBytes.h"

/// Whole MXF files of several partitions, laid out independently of the library, and looking into them.
namespace Vantor::MXF {

struct PartitionLayout {
  KLV::PartitionKind kind = KLV::PartitionKind::kBody;
  KLV::PartitionStatus status = KLV::PartitionStatus::kClosedComplete;
  uint32 kag = 1;
  uint32 bodySID = 0;
  Bytes metadata = {};  ///< primer pack and sets; empty: none
  uint64 spare = 0;     ///< the size of a fill item behind them, as far as the KAG demands no larger one
  Bytes indexTable = {};
  Bytes essence = {};
  uint8 berOctets = 4;  ///< of the length fields of pack and fill; fill that is too small for 9 has the customary ones
  Types::UniversalLabel operationalPattern = {};
  std::vector<Types::UniversalLabel> essenceContainers = {};
  uint64 spareForPack = 0;  ///< as `spare`, behind the pack
};

struct FileLayout {
  std::vector<PartitionLayout> partitions;
  std::size_t runIn = 0;
  bool hasRandomIndexPack = true;
};

inline Bytes fillOf(uint64 size, uint8 berOctets = 4) {
  const uint64 header = KLV::Key::kSize + berOctets;
  if (berOctets != 4 && size >= header) return klv(KLV::fillKey(), zeros(size - header), berOctets);
  DataIO::Memory::MemoryDataSink sink;
  writeFill(sink, size);
  return sink.take();
}

/// Fill up to the next multiple of the KAG size, of at least `spare` bytes.
inline Bytes padding(std::size_t position, uint32 kag, uint64 spare = 0, uint8 berOctets = 4) {
  uint64 size = spare;
  while ((kag > 1 && (position + size) % kag != 0) || !canFill(size)) ++size;
  return fillOf(size, berOctets);
}

/// One partition and what its pack counts.
inline Bytes partitionBytes(const PartitionLayout& layout, PartitionPack pack) {
  const std::size_t packSize = kPackSize - 4 + layout.berOctets + 16 * layout.essenceContainers.size();
  Bytes body = padding(packSize, layout.kag, layout.spareForPack, layout.berOctets);
  const auto add = [&](const Bytes& part, uint64 spare) {
    const std::size_t before = body.size();
    if (part.empty()) return std::size_t{0};
    body = body + part;
    body = body + padding(packSize + body.size(), layout.kag, spare, layout.berOctets);
    return body.size() - before;
  };
  pack.kind = layout.kind;
  pack.status = layout.status;
  pack.kagSize = layout.kag;
  pack.bodySID = layout.bodySID;
  pack.operationalPattern = layout.operationalPattern;
  pack.essenceContainers = layout.essenceContainers;
  pack.headerByteCount = add(layout.metadata, layout.spare);
  pack.indexByteCount = add(layout.indexTable, 0);
  add(layout.essence, 0);
  return partition(pack, layout.berOctets) + body;
}

inline Bytes randomIndexOf(const FileLayout& layout, const std::vector<uint64>& offsets) {
  Bytes value;
  for (std::size_t i = 0; i < offsets.size(); ++i) {
    value = value + bigEndian(layout.partitions[i].bodySID) + bigEndian(offsets[i]);
  }
  return klv(KLV::randomIndexPackKey(), value + bigEndian(static_cast<uint32>(20 + value.size() + 4)));
}

inline Bytes fileOf(const FileLayout& layout) {
  std::vector<uint64> offsets;
  uint64 end = 0;
  for (const auto& one : layout.partitions) {
    offsets.push_back(end);
    end += partitionBytes(one, {}).size();
  }
  const bool hasFooter = layout.partitions.back().kind == KLV::PartitionKind::kFooter;
  Bytes file(layout.runIn, 0x41);
  for (std::size_t i = 0; i < offsets.size(); ++i) {
    PartitionPack pack;
    pack.thisPartition = offsets[i];
    pack.previousPartition = i == 0 ? 0 : offsets[i - 1];
    pack.footerPartition = hasFooter ? offsets.back() : 0;
    pack.bodyOffset = layout.partitions[i].bodySID * 1000;
    const Bytes bytes = partitionBytes(layout.partitions[i], pack);
    file.insert(file.end(), bytes.begin(), bytes.end());  // in linear time
  }
  return layout.hasRandomIndexPack ? file + randomIndexOf(layout, offsets) : file;
}

/// A primer pack and a set with a value of so many bytes: 100 bytes and more.
inline Bytes metadataOfSize(std::size_t size, uint8 octet) {
  const Bytes start = primer() + setWithUID(kPreface, octet);
  const KLV::Key set = keyOf("06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.7F.00");
  return start + klv(set, item(0x8001, Bytes(size - start.size() - 24, octet)));
}

/// Segments of index tables are local sets.
inline Bytes indexTable() {
  return klv(keyOf("06.0E.2B.34.02.53.01.01.0D.01.02.01.01.10.01.00"), item(0x3f06, bigEndian(uint32{129})));
}

inline Bytes bytesOf(const Path& path) {
  std::ifstream stream(path, std::ios::binary);
  const std::string all((std::istreambuf_iterator<char>(stream)), {});
  return Bytes(all.begin(), all.end());
}

inline Bytes slice(const Bytes& bytes, uint64 start, uint64 end) {
  return Bytes(bytes.begin() + static_cast<std::ptrdiff_t>(start), bytes.begin() + static_cast<std::ptrdiff_t>(end));
}

/// The header metadata of a partition of a sound file, without the fill behind them.
inline Bytes metadataIn(const Path& path, std::size_t number) {
  DataIO::File::FileDataSource source(path);
  const auto room = *findMetadataRoom(source, readStructure(source), number);
  source.seek(room.offset);
  uint64 end = room.offset;
  while (source.position() < room.end()) {
    const KLVHeader klv = readKLVHeader(source);
    skipValue(klv, source);
    if (!KLV::isFill(klv.key)) end = source.position();
  }
  return slice(bytesOf(path), room.offset, end);
}

}  // namespace Vantor::MXF
