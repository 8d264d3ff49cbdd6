#include "Core/MXF/ReplacementPlan.h"

#include <algorithm>

#include "Core/DataIO/Memory.h"
#include "Core/KLV/Keys.h"
#include "Core/MXF/Fill.h"
#include "Core/MXF/HeaderMetadataKeys.h"
#include "Core/MXF/KLVHeader.h"
#include "Core/MXF/ReplacementSafety.h"
#include "Core/Platform/Raise.h"

namespace Vantor::MXF {

namespace {

using Exceptions::InvalidFormat;
using Exceptions::raise;

/// The bytes as a reader of the file will go through them.
void requireKLVs(const MetadataReplacement& replacement) {
  DataIO::Memory::MemoryDataSource source(replacement.bytes->data(), replacement.bytes->size());
  for (bool isFirst = true; isFirst || source.remaining() != 0; isFirst = false) {
    const KLVHeader klv = readKLVHeader(source);
    if (isFirst && !KLV::isPrimerPack(klv.key)) {
      raise<InvalidFormat>("the header metadata of partition {} cannot be replaced: the new ones have no primer pack",
                           replacement.partition);
    }
    if (endsHeaderMetadata(klv.key)) {
      raise<InvalidFormat>(
          "the header metadata of partition {} cannot be replaced: byte {} of the new ones has a key of another part "
          "of MXF",
          replacement.partition, klv.offset);
    }
    source.skip(klv.length.value);
  }
}

void requireMetadata(const MetadataReplacement& replacement) {
  try {
    requireKLVs(replacement);
  } catch (const Exceptions::ParseError& error) {
    raise<InvalidFormat>("the header metadata of partition {} cannot be replaced: the new ones are no KLVs: {}",
                         replacement.partition, error.message());
  }
}

PlannedReplacement plan(const std::vector<std::optional<MetadataRoom>>& rooms, const MetadataReplacement& replacement) {
  if (replacement.partition >= rooms.size()) {
    raise<InvalidFormat>(
        "the header metadata of partition {} cannot be replaced: the file has {} partitions, counted from 0",
        replacement.partition, rooms.size());
  }
  const auto& room = rooms[replacement.partition];
  if (!room) {
    raise<InvalidFormat>("the header metadata of partition {} cannot be replaced: it has none", replacement.partition);
  }
  return {replacement.partition, *room, replacement.bytes.get()};
}

}  // namespace

bool PlannedReplacement::fits() const { return bytes->size() <= room.size && canFill(room.size - bytes->size()); }

std::vector<PlannedReplacement> planReplacements(DataIO::SeekableSource& source, const FileStructure& structure,
                                                 const MetadataReplacements& replacements) {
  const auto rooms = refuseUnsafe(source, structure);
  std::vector<PlannedReplacement> planned;
  const Bytes* checked = nullptr;
  for (const auto& replacement : replacements) {
    if (replacement.bytes.get() != checked) requireMetadata(replacement);
    checked = replacement.bytes.get();
    planned.push_back(plan(rooms, replacement));
  }
  std::sort(planned.begin(), planned.end(), [](const PlannedReplacement& left, const PlannedReplacement& right) {
    return left.partition < right.partition;
  });
  for (std::size_t i = 1; i < planned.size(); ++i) {
    if (planned[i].partition != planned[i - 1].partition) continue;
    raise<InvalidFormat>("the header metadata of partition {} cannot be replaced: twice", planned[i].partition);
  }
  return planned;
}

uint64 sizeInCopy(const PlannedReplacement& replacement, uint32 kagSize) {
  if (replacement.fits()) return replacement.room.size;
  if (kagSize > kMaxKAGSize) {
    raise<Exceptions::InvalidLength>(
        "partition {} cannot be padded to a KAG of {} bytes; more than {} are taken for damage", replacement.partition,
        kagSize, kMaxKAGSize);
  }
  const uint64 step = std::max<uint32>(kagSize, 1);
  const uint64 needed = replacement.bytes->size();
  uint64 size = needed + (replacement.room.size % step + step - needed % step) % step;
  while (!canFill(size - needed)) size += step;
  return size;
}

}  // namespace Vantor::MXF
