#include "Core/MXF/ReplacementPlan.h"

#include <algorithm>
#include <utility>

#include "Core/DataIO/Memory.h"
#include "Core/KLV/BERLength.h"
#include "Core/KLV/Keys.h"
#include "Core/MXF/KLVHeader.h"
#include "Core/MXF/ReplacementSafety.h"
#include "Core/Platform/Raise.h"

namespace Vantor::MXF {

namespace {

using DataIO::SeekableSource;
using Exceptions::InvalidFormat;
using Exceptions::InvalidLength;
using Exceptions::raise;
using Labels = std::vector<Types::UniversalLabel>;

/// Goes through the bytes as a reader of the file will. Returns whether they have an object directory.
bool requireKLVs(const MetadataReplacement& replacement) {
  DataIO::Memory::MemoryDataSource source(replacement.bytes->data(), replacement.bytes->size());
  bool hasDirectory = false;
  for (bool isFirst = true; isFirst || source.remaining() != 0; isFirst = false) {
    const KLVHeader klv = readKLVHeader(source);
    if (isFirst && !KLV::isPrimerPack(klv.key)) {
      raise<InvalidFormat>("the header metadata of partition {} cannot be replaced: the new ones have no primer pack",
                           replacement.partition);
    }
    if (KLV::endsHeaderMetadata(klv.key)) {
      raise<InvalidFormat>(
          "the header metadata of partition {} cannot be replaced: byte {} of the new ones has a key of another part "
          "of MXF",
          replacement.partition, klv.offset);
    }
    hasDirectory = hasDirectory || KLV::isOfObjectDirectory(klv.key);
    source.skip(klv.length.value);
  }
  return hasDirectory;
}

bool requireMetadata(const MetadataReplacement& replacement) {
  try {
    return requireKLVs(replacement);
  } catch (const Exceptions::ParseError& error) {
    raise<InvalidFormat>("the header metadata of partition {} cannot be replaced: the new ones are no KLVs: {}",
                         replacement.partition, error.message());
  }
}

const MetadataRoom& requireRoom(const ReplacementPlan& plan, std::size_t partition) {
  if (partition >= plan.rooms.size()) {
    raise<InvalidFormat>(
        "the header metadata of partition {} cannot be replaced: the file has {} partitions, counted from 0", partition,
        plan.rooms.size());
  }
  if (plan.rooms[partition]) return *plan.rooms[partition];
  raise<InvalidFormat>("the header metadata of partition {} cannot be replaced: it has none", partition);
}

/// The layout that a directory in the file has; that of new metadata, where the file has none.
DirectoryLayout oldLayout(SeekableSource& source, const PartitionInfo& partition, const MetadataRoom& room) {
  DirectoryLayout layout;
  if (room.hasObjectDirectory) layout = requireSoundDirectory(readRoom(source, room), room.offset);
  if (partition.pack.kagSize <= kMaxKAGSize) layout.grid = std::max<uint64>(partition.pack.kagSize, 1);
  return layout;
}

ListedMetadata listed(const MetadataReplacement& replacement, const DirectoryLayout& layout) {
  try {
    return {*replacement.bytes, layout};
  } catch (const Exceptions::ParseError& error) {
    raise<InvalidFormat>(
        "the header metadata of partition {} cannot be replaced: the object directory of the new ones cannot be made "
        "anew: {}",
        replacement.partition, error.message());
  }
}

void planMetadata(SeekableSource& source, const MetadataReplacement& replacement, bool hasDirectory,
                  ReplacementPlan& plan) {
  const MetadataRoom& room = requireRoom(plan, replacement.partition);
  auto& planned = plan.partitions[replacement.partition].metadata;
  if (planned) {
    raise<InvalidFormat>("the header metadata of partition {} cannot be replaced: twice", replacement.partition);
  }
  planned = PlannedMetadata{room, replacement.bytes, {}};
  if (!hasDirectory) return;
  planned->directory = listed(replacement, oldLayout(source, plan.structure.partitions[replacement.partition], room));
}

/// A batch has no order.
bool haveSameLabels(const Labels& left, const Labels& right) {
  return std::is_permutation(left.begin(), left.end(), right.begin(), right.end());
}

/// Where the fill behind a pack ends.
uint64 fillEnd(SeekableSource& source, const FileStructure& structure, std::size_t number) {
  const auto& partitions = structure.partitions;
  const uint64 end = number + 1 == partitions.size() ? structure.end : partitions[number + 1].offset;
  uint64 behind = partitions[number].packEnd;
  source.seek(behind);
  while (behind < end && KLV::isFill(peekKey(source))) {
    skipValue(readKLVHeader(source), source);
    if (source.position() > end) break;
    behind = source.position();
  }
  return behind;
}

uint64 valueSize(const PartitionPack& pack) {
  return kPartitionPackSize + uint64{Types::UniversalLabel::kSize} * pack.essenceContainers.size();
}

void requireSize(const PartitionPack& pack, std::size_t number) {
  if (valueSize(pack) <= kMaxPartitionPackSize) return;
  raise<InvalidLength>("the pack of partition {} cannot get {} essence containers: it has at most {} bytes", number,
                       pack.essenceContainers.size(), kMaxPartitionPackSize);
}

void planPack(SeekableSource& source, const PackLabels& labels, std::size_t number, ReplacementPlan& plan) {
  const PartitionInfo& partition = plan.structure.partitions[number];
  PlannedPack planned;
  planned.pack = partition.pack;
  if (partition.damaged || !relabel(planned.pack, labels)) return;
  requireSize(planned.pack, number);
  source.seek(partition.offset);
  const KLVHeader old = readKLVHeader(source);
  planned.key = old.key;
  planned.lengthOctets = old.length.octets;
  planned.room = {partition.offset, partition.packEnd - partition.offset};
  if (planned.size() != planned.room.size) {
    planned.room.size = fillEnd(source, plan.structure, number) - partition.offset;
  }
  plan.partitions[number].pack = std::move(planned);
}

void planPacks(SeekableSource& source, const PackLabels& labels, ReplacementPlan& plan) {
  const std::size_t count = plan.partitions.size();
  if (labels.partition && *labels.partition >= count) {
    raise<InvalidFormat>("the pack of partition {} cannot get other labels: the file has {} partitions, counted from 0",
                         *labels.partition, count);
  }
  for (std::size_t i = 0; i < count && !labels.isEmpty(); ++i) {
    if (i == labels.partition.value_or(i)) planPack(source, labels, i, plan);
  }
}

}  // namespace

bool relabel(PartitionPack& pack, const PackLabels& labels) {
  bool isChanged = false;
  if (labels.operationalPattern && pack.operationalPattern != *labels.operationalPattern) {
    pack.operationalPattern = *labels.operationalPattern;
    isChanged = true;
  }
  if (labels.essenceContainers && !haveSameLabels(pack.essenceContainers, *labels.essenceContainers)) {
    pack.essenceContainers = *labels.essenceContainers;
    pack.essenceContainerSize = Types::UniversalLabel::kSize;
    isChanged = true;
  }
  return isChanged;
}

uint64 PlannedPack::size() const {
  return KLV::Key::kSize + KLV::berOctets(valueSize(pack), lengthOctets) + valueSize(pack);
}

void PlannedPack::write(DataIO::DataSink& sink) const {
  writeKLVHeader(sink, key, valueSize(pack), lengthOctets);
  pack.render(sink);
}

void PlannedMetadata::write(uint64 offset, DataIO::DataSink& sink) const {
  if (!directory) return sink.write(bytes->data(), bytes->size());
  const Bytes placed = directory->at(offset);
  sink.write(placed.data(), placed.size());
}

ReplacementPlan planReplacements(SeekableSource& source, const Replacements& replacements) {
  ReplacementPlan plan;
  plan.structure = readStructure(source);
  std::vector<Unchecked> unchecked;  // which is the caller's to know
  plan.rooms = refuseUnsafe(source, plan.structure, replacements.isForced ? &unchecked : nullptr);
  plan.partitions.resize(plan.rooms.size());
  const Bytes* checked = nullptr;
  bool hasDirectory = false;
  for (const auto& replacement : replacements.metadata) {
    if (replacement.bytes.get() != checked) hasDirectory = requireMetadata(replacement);
    checked = replacement.bytes.get();
    planMetadata(source, replacement, hasDirectory, plan);
  }
  planPacks(source, replacements.labels, plan);
  return plan;
}

void planMovedDirectories(SeekableSource& source, ReplacementPlan& plan) {
  for (std::size_t i = 0; i < plan.partitions.size(); ++i) {
    auto& planned = plan.partitions[i].metadata;
    if (planned || !plan.rooms[i] || !plan.rooms[i]->hasObjectDirectory) continue;
    const auto layout = oldLayout(source, plan.structure.partitions[i], *plan.rooms[i]);
    auto bytes = std::make_shared<const Bytes>(readRoom(source, withoutFill(source, *plan.rooms[i])));
    planned = PlannedMetadata{*plan.rooms[i], bytes, ListedMetadata(*bytes, layout)};
  }
}

}  // namespace Vantor::MXF
