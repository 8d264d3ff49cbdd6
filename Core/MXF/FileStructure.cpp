#include "Core/MXF/FileStructure.h"

#include <algorithm>
#include <array>
#include <string>

#include "Core/DataIO/OneState.h"
#include "Core/KLV/Keys.h"
#include "Core/KLV/Value.h"
#include "Core/MXF/KLVHeader.h"
#include "Core/MXF/RandomIndexPack.h"
#include "Core/Platform/Raise.h"

namespace Vantor::MXF {

namespace {

using DataIO::DataSource;
using DataIO::SeekableSource;
using Exceptions::ParseError;
using Exceptions::raise;
using Partitions = std::vector<PartitionInfo>;

// ST 377-1: these octets of the partition pack keys occur nowhere in a run-in.
constexpr std::array<uint8, 11> kPartitionPackStart = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x05,
                                                       0x01, 0x01, 0x0d, 0x01, 0x02};

/// Reads on to the key of the header partition pack, without going back, and its length.
KLVHeader readHeaderPackHeader(DataSource& source) {
  std::array<uint8, KLV::Key::kSize> octets{};
  const uint64 start = source.position();
  std::size_t found = source.readUpTo(octets.data(), octets.size());
  if (KLV::isHeaderPartitionPack(KLV::Key(octets))) return readKLVHeader(source, KLV::Key(octets));
  for (uint64 runIn = 0; runIn <= kMaxRunIn && found >= kPartitionPackStart.size(); ++runIn) {
    if (std::equal(kPartitionPackStart.begin(), kPartitionPackStart.end(), octets.begin())) {
      const KLV::Key key(octets);
      if (KLV::isHeaderPartitionPack(key)) return readKLVHeader(source, key);
      raise<ParseError>("at byte offset {}: expected a header partition pack, found key {}", start + runIn,
                        key.toString());
    }
    std::copy(octets.begin() + 1, octets.end(), octets.begin());
    octets.back() = 0;
    --found;
    if (found + 1 == octets.size()) found += source.readUpTo(&octets.back(), 1);
  }
  raise<ParseError>("this is no MXF file: no partition pack among its first 65,536 bytes");
}

/// Reads the pack whose key and length were read; the source then stands behind it.
PartitionInfo readPack(DataSource& source, const KLVHeader& klv) {
  PartitionInfo partition;
  partition.offset = klv.offset;
  if (klv.length.value > kMaxPartitionPackSize) {
    raise<ParseError>("at byte offset {}: expected a partition pack, found one of {} bytes", klv.offset,
                      klv.length.value);
  }
  const KLV::Value value(source, klv.length.value);
  partition.pack = PartitionPack::parse(klv.key, value.rawBuffer(), value.serializedSize(), klv.valueOffset);
  partition.packEnd = source.position();
  return partition;
}

PartitionInfo readPackAt(SeekableSource& source, uint64 offset) {
  source.seek(offset);
  return readPack(source, readKLVHeader(source));
}

/// The partition at an offset that came out of the file; none when no sound partition pack stands there.
std::optional<PartitionInfo> tryReadPackAt(SeekableSource& source, uint64 runIn, uint64 offset) {
  if (offset > source.size() - runIn) return std::nullopt;
  source.seek(runIn + offset);
  if (!KLV::isPartitionPack(peekKey(source))) return std::nullopt;
  try {
    return readPackAt(source, runIn + offset);
  } catch (const ParseError&) {
    return std::nullopt;
  }
}

/// A pack in a walk. A damaged one is kept, so that the partitions behind it keep their numbers.
PartitionInfo readPackLeniently(SeekableSource& source, const KLVHeader& klv) {
  try {
    return readPack(source, klv);
  } catch (const ParseError&) {
    PartitionInfo partition;
    partition.offset = klv.offset;
    partition.pack.kind = KLV::partitionKind(klv.key);
    partition.pack.status = KLV::partitionStatus(klv.key);
    partition.damaged = true;
    return partition;
  }
}

/// The next KLV in a walk; none at the end of the file, at zeros, and at anything that is no whole KLV.
std::optional<KLVHeader> nextKLV(SeekableSource& source) {
  try {
    const KLVHeader klv = readKLVHeader(source);
    if (klv.key != KLV::Key() && valueFits(klv, source)) return klv;
  } catch (const ParseError&) {
    // The walk ends here; what it found so far stands.
  }
  return std::nullopt;
}

FileStructure walk(SeekableSource& source, uint64 runIn) {
  FileStructure structure{source.size(), runIn, StructureSource::kWalk, 0, {}};
  source.seek(runIn);
  while (const auto klv = nextKLV(source)) {
    if (KLV::isPartitionPack(klv->key)) structure.partitions.push_back(readPackLeniently(source, *klv));
    skipValue(*klv, source);
    structure.end = source.position();
  }
  return structure;
}

/// Whether a list of partitions that starts with the header partition can be all of them.
bool isWholeChain(const Partitions& partitions, uint64 runIn) {
  for (std::size_t i = 0; i < partitions.size(); ++i) {
    const PartitionPack& pack = partitions[i].pack;
    if (runIn + pack.thisPartition != partitions[i].offset) return false;
    if (i != 0 && runIn + pack.previousPartition != partitions[i - 1].offset) return false;
  }
  const uint64 namedFooter = partitions.front().pack.footerPartition;
  return namedFooter == 0 || runIn + namedFooter == partitions.back().offset;
}

Partitions partitionsByRandomIndex(SeekableSource& source, const PartitionInfo& header) {
  Partitions partitions;
  for (const uint64 offset : readRandomIndexPack(source, header.offset)) {
    auto partition = tryReadPackAt(source, header.offset, offset - header.offset);
    if (!partition || (partitions.empty() && offset != header.offset)) return {};
    partitions.push_back(std::move(*partition));
  }
  if (partitions.empty() || !isWholeChain(partitions, header.offset)) return {};
  return partitions;
}

/// Each step goes towards the start of the file, so a cycle ends the search.
Partitions partitionsByPreviousLinks(SeekableSource& source, const PartitionInfo& header) {
  const uint64 runIn = header.offset;
  Partitions partitions;
  uint64 offset = header.pack.footerPartition;
  while (offset != 0) {
    auto partition = tryReadPackAt(source, runIn, offset);
    if (!partition || partition->pack.previousPartition >= offset) return {};
    offset = partition->pack.previousPartition;
    partitions.push_back(std::move(*partition));
  }
  if (partitions.empty() || !isFooter(partitions.front())) return {};
  partitions.push_back(header);
  std::reverse(partitions.begin(), partitions.end());
  return isWholeChain(partitions, runIn) ? partitions : Partitions();
}

FileStructure structureFrom(SeekableSource& source, const PartitionInfo& header) {
  const uint64 size = source.size();
  if (auto found = partitionsByRandomIndex(source, header); !found.empty()) {
    return {size, header.offset, StructureSource::kRandomIndexPack, size, std::move(found)};
  }
  if (auto found = partitionsByPreviousLinks(source, header); !found.empty()) {
    return {size, header.offset, StructureSource::kPreviousPartitions, size, std::move(found)};
  }
  return walk(source, header.offset);
}

[[noreturn]] void refuse(const PartitionChoice& choice, const FileStructure& structure) {
  std::string message = "the file has no " + choice.name();
  if (choice.kind() == PartitionChoice::Kind::kNumber) {
    message += ", only " + std::to_string(structure.partitions.size()) + ", counted from 0";
  }
  if (structure.end != structure.fileSize) {
    message += "; behind byte offset " + std::to_string(structure.end) + " it cannot be followed";
  }
  raise<ParseError>("{}", message);
}

/// The partition in a list, or the reason why its pack cannot be read.
PartitionInfo sound(SeekableSource& source, const PartitionInfo& partition) {
  return partition.damaged ? readPackAt(source, partition.offset) : partition;
}

PartitionInfo findFooter(SeekableSource& source, const PartitionInfo& header) {
  const uint64 named = header.pack.footerPartition;
  if (auto footer = tryReadPackAt(source, header.offset, named); footer && isFooter(*footer)) return *footer;
  if (const auto offsets = readRandomIndexPack(source, header.offset); !offsets.empty()) {
    auto footer = tryReadPackAt(source, header.offset, offsets.back() - header.offset);
    if (footer && isFooter(*footer)) return *footer;
  }
  const FileStructure structure = walk(source, header.offset);
  const auto last = std::find_if(structure.partitions.rbegin(), structure.partitions.rend(), isFooter);
  if (last == structure.partitions.rend()) refuse(PartitionChoice::footer(), structure);
  return sound(source, *last);
}

}  // namespace

PartitionInfo readHeaderPartition(DataSource& source) { return readPack(source, readHeaderPackHeader(source)); }

FileStructure readStructure(SeekableSource& source) {
  source.seek(0);
  return structureFrom(source, readHeaderPartition(source));
}

FileStructure readStructure(const Path& path) {
  return DataIO::File::readInOneState(path, [](SeekableSource& source) { return readStructure(source); });
}

std::optional<std::size_t> partitionAt(const FileStructure& structure, uint64 offset) {
  const auto& partitions = structure.partitions;
  const auto found = std::lower_bound(partitions.begin(), partitions.end(), offset,
                                      [](const PartitionInfo& left, uint64 right) { return left.offset < right; });
  if (found == partitions.end() || found->offset != offset) return std::nullopt;
  return static_cast<std::size_t>(found - partitions.begin());
}

int rankOf(KLV::PartitionStatus status) {
  switch (status) {
    case KLV::PartitionStatus::kClosedComplete:
      return 4;
    case KLV::PartitionStatus::kClosedIncomplete:
      return 3;
    case KLV::PartitionStatus::kOpenComplete:
      return 2;
    case KLV::PartitionStatus::kOpenIncomplete:
      return 1;
    case KLV::PartitionStatus::kGenericStream:
      return 0;
  }
  return 0;
}

std::optional<std::size_t> bestPartition(const FileStructure& structure) {
  const auto& partitions = structure.partitions;
  std::optional<std::size_t> best;
  for (std::size_t i = 0; i < partitions.size(); ++i) {
    if (!hasMetadata(partitions[i])) continue;
    if (!best || rankOf(partitions[i].pack.status) >= rankOf(partitions[*best].pack.status)) best = i;
  }
  return best;
}

PartitionChoice choiceOf(const FileStructure& structure, std::size_t number) {
  if (number == 0) return PartitionChoice::header();
  if (isFooter(structure.partitions[number])) return PartitionChoice::footer();
  return PartitionChoice::number(static_cast<uint32>(number));
}

PartitionInfo findPartition(SeekableSource& source, const PartitionChoice& choice) {
  source.seek(0);
  PartitionInfo header = readHeaderPartition(source);
  if (choice.kind() == PartitionChoice::Kind::kFooter) return findFooter(source, header);
  const bool isBest = choice.kind() == PartitionChoice::Kind::kBest;
  if (!isBest && choice.number() == 0) return header;
  const FileStructure structure = structureFrom(source, header);
  if (isBest) return structure.partitions[bestPartition(structure).value_or(0)];
  if (choice.number() >= structure.partitions.size()) refuse(choice, structure);
  return sound(source, structure.partitions[choice.number()]);
}

}  // namespace Vantor::MXF
