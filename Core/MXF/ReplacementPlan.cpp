#include "Core/MXF/ReplacementPlan.h"

#include <algorithm>
#include <string>

#include "Core/DataIO/Memory.h"
#include "Core/KLV/BERLength.h"
#include "Core/KLV/Keys.h"
#include "Core/MXF/Fill.h"
#include "Core/MXF/HeaderMetadataKeys.h"
#include "Core/MXF/ReplacementSafety.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor::MXF {

namespace {

using DataIO::File::FileDataSource;

constexpr const char* kSourceName = "Core/MXF/ReplacementPlan";

[[noreturn]] void throwInvalid(std::size_t partition, const std::string& message, int line) {
  throw Exceptions::InvalidFormat(
      "the header metadata of partition " + std::to_string(partition) + " cannot be replaced: " + message, kSourceName,
      line);
}

KLV::Key readKey(DataIO::DataSource& source) {
  uint8 octets[KLV::Key::kSize];
  source.read(octets, sizeof octets);
  return KLV::Key(octets);
}

/// The bytes as a reader of the file will go through them.
void requireKLVs(const MetadataReplacement& replacement) {
  DataIO::Memory::MemoryDataSource source(replacement.bytes->data(), replacement.bytes->size());
  if (!KLV::isPrimerPack(readKey(source)))
    throwInvalid(replacement.partition, "the new ones have no primer pack", __LINE__);
  source.skip(KLV::readBERLength(source).value);
  while (source.remaining() != 0) {
    const uint64 offset = source.position();
    if (endsHeaderMetadata(readKey(source))) {
      throwInvalid(replacement.partition,
                   "byte " + std::to_string(offset) + " of the new ones has a key of another part of MXF", __LINE__);
    }
    source.skip(KLV::readBERLength(source).value);
  }
}

void requireMetadata(const MetadataReplacement& replacement) {
  try {
    requireKLVs(replacement);
  } catch (const Exceptions::ParseError& error) {
    throwInvalid(replacement.partition, "the new ones are no KLVs: " + error.message(), __LINE__);
  }
}

PlannedReplacement plan(const std::vector<std::optional<MetadataRoom>>& rooms, const MetadataReplacement& replacement) {
  if (replacement.partition >= rooms.size()) {
    throwInvalid(replacement.partition, "the file has " + std::to_string(rooms.size()) + " partitions, counted from 0",
                 __LINE__);
  }
  const auto& room = rooms[replacement.partition];
  if (!room) throwInvalid(replacement.partition, "it has none", __LINE__);
  return {replacement.partition, *room, replacement.bytes.get()};
}

}  // namespace

bool PlannedReplacement::fits() const { return bytes->size() <= room.size && canFill(room.size - bytes->size()); }

std::vector<PlannedReplacement> planReplacements(FileDataSource& source, const FileStructure& structure,
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
    if (planned[i].partition == planned[i - 1].partition) throwInvalid(planned[i].partition, "twice", __LINE__);
  }
  return planned;
}

uint64 sizeInCopy(const PlannedReplacement& replacement, uint32 kagSize) {
  if (replacement.fits()) return replacement.room.size;
  if (kagSize > kMaxKAGSize) {
    throw Exceptions::InvalidLength("partition " + std::to_string(replacement.partition) +
                                        " cannot be padded to a KAG of " + std::to_string(kagSize) +
                                        " bytes; more than " + std::to_string(kMaxKAGSize) + " are taken for damage",
                                    kSourceName, __LINE__);
  }
  const uint64 step = std::max<uint32>(kagSize, 1);
  const uint64 needed = replacement.bytes->size();
  uint64 size = needed + (replacement.room.size % step + step - needed % step) % step;
  while (!canFill(size - needed)) size += step;
  return size;
}

}  // namespace Vantor::MXF
