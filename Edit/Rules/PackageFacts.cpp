#include "Edit/Rules/PackageFacts.h"

#include <array>

namespace Vantor::Edit {

namespace {

/// The data definitions of picture and sound that files had before there were labels for them.
constexpr std::array<std::array<uint8, 16>, 2> kOldEssence = {
    {{0x80, 0x7d, 0x00, 0x60, 0x08, 0x14, 0x3e, 0x6f, 0x6f, 0x3c, 0x8c, 0xe1, 0x6c, 0xef, 0x11, 0xd2},
     {0x80, 0x7d, 0x00, 0x60, 0x08, 0x14, 0x3e, 0x6f, 0x78, 0xe1, 0xeb, 0xe1, 0x6c, 0xef, 0x11, 0xd2}}};

/// ST 400: 01.03.02.02 are picture, sound and data, 01.03.02.01 timecode and descriptive metadata.
bool isEssence(const Types::UniversalLabel& definition) {
  for (const auto& old : kOldEssence) {
    if (definition == Types::UniversalLabel(old)) return true;
  }
  return definition.octet(9) == 1 && definition.octet(10) == 3 && definition.octet(11) == 2 && definition.octet(12) > 1;
}

}  // namespace

std::optional<int64> lengthOf(const Model& model, const MetadataSet& track) {
  const auto* segment = model.target(track, "TrackSegment");
  const auto length = segment == nullptr ? std::nullopt : integerOf(*segment, "ComponentLength");
  return length.value_or(-1) < 0 ? std::nullopt : length;
}

bool isEssenceTrack(const Model& model, const MetadataSet& track) {
  const auto* segment = model.target(track, "TrackSegment");
  const auto definition = segment == nullptr ? std::nullopt : labelOf(*segment, "ComponentDataDefinition");
  return definition && isEssence(*definition);
}

const MetadataSet* linkedTrackOf(const PlacedDescriptor& descriptor) {
  const auto& tracks = descriptor.package->byTrackID;
  const auto found = tracks.find(integerOf(*descriptor.set, "LinkedTrackID").value_or(0));
  return found == tracks.end() ? nullptr : found->second;
}

bool areEqual(const Types::Rational& left, const Types::Rational& right) {
  return int64{left.numerator()} * right.denominator() == int64{right.numerator()} * left.denominator();
}

}  // namespace Vantor::Edit
