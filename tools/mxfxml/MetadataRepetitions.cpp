#include "MetadataRepetitions.h"

#include "Core/Platform/Exceptions.h"

namespace Vantor::Tool {

MetadataRepetitions::MetadataRepetitions(const Path& file, const MXF::FileStructure& structure)
    : source_(file), structure_(structure), header_(roomOf(0)) {}

MetadataRepetitions::Like MetadataRepetitions::like(std::size_t partition) {
  const auto room = roomOf(partition);
  if (areSame(room, header_)) return Like::kHeader;
  if (areSame(room, earlier_)) return Like::kEarlier;
  earlier_ = room;
  return Like::kNone;
}

/// None where something is wrong with it, which whoever reads or replaces the metadata will tell.
std::optional<MXF::MetadataRoom> MetadataRepetitions::roomOf(std::size_t partition) {
  try {
    const auto room = MXF::findMetadataRoom(source_, structure_, partition);
    if (room) return MXF::withoutFill(source_, *room);
  } catch (const Exceptions::BaseException&) {
    // Nobody can tell then.
  }
  return std::nullopt;
}

bool MetadataRepetitions::areSame(const std::optional<MXF::MetadataRoom>& left,
                                  const std::optional<MXF::MetadataRoom>& right) {
  return left && right && MXF::haveSameBytes(source_, *left, *right);
}

}  // namespace Vantor::Tool
