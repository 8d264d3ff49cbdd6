#include "Edit/Repetitions.h"

#include "Core/Platform/Exceptions.h"

namespace Vantor::Edit {

Repetitions::Repetitions(DataIO::SeekableSource& source, const MXF::FileStructure& structure)
    : source_(source), structure_(structure), header_(roomOf(0)) {}

Repetitions::Like Repetitions::like(std::size_t partition) {
  const auto room = roomOf(partition);
  if (areSame(room, header_)) return Like::kHeader;
  if (areSame(room, earlier_)) return Like::kEarlier;
  earlier_ = room;
  return Like::kNone;
}

/// None for damaged metadata, which reading or replacing them reports.
std::optional<MXF::MetadataRoom> Repetitions::roomOf(std::size_t partition) {
  try {
    const auto room = MXF::findMetadataRoom(source_, structure_, partition);
    if (room) return MXF::withoutFill(source_, *room);
  } catch (const Exceptions::BaseException&) {
    // Damaged metadata repeat no others.
  }
  return std::nullopt;
}

bool Repetitions::areSame(const std::optional<MXF::MetadataRoom>& left, const std::optional<MXF::MetadataRoom>& right) {
  return left && right && MXF::haveSameBytes(source_, *left, *right);
}

}  // namespace Vantor::Edit
