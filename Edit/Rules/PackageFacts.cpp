#include "Edit/Rules/PackageFacts.h"

namespace Vantor::Edit {

namespace {

using Octets = std::array<uint8, 16>;

/// The data definitions of picture and sound that files had before there were labels for them.
constexpr Octets kOldPicture = {0x80, 0x7d, 0x00, 0x60, 0x08, 0x14, 0x3e, 0x6f,
                                0x6f, 0x3c, 0x8c, 0xe1, 0x6c, 0xef, 0x11, 0xd2};
constexpr Octets kOldSound = {0x80, 0x7d, 0x00, 0x60, 0x08, 0x14, 0x3e, 0x6f,
                              0x78, 0xe1, 0xeb, 0xe1, 0x6c, 0xef, 0x11, 0xd2};

}  // namespace

/// ST 400: 01.03.02.02 are picture, sound and data, 01.03.02.01 timecode and descriptive metadata.
EssenceKind essenceKindOf(const Types::UniversalLabel& definition) {
  if (definition == Types::UniversalLabel(kOldPicture)) return EssenceKind::kPicture;
  if (definition == Types::UniversalLabel(kOldSound)) return EssenceKind::kSound;
  const bool isEssence =
      definition.octet(9) == 1 && definition.octet(10) == 3 && definition.octet(11) == 2 && definition.octet(12) > 1;
  if (!isEssence) return EssenceKind::kNone;
  if (definition.octet(13) == 1) return EssenceKind::kPicture;
  return definition.octet(13) == 2 ? EssenceKind::kSound : EssenceKind::kData;
}

std::optional<int64> lengthOf(const Model& model, const MetadataSet& track) {
  const auto* segment = model.target(track, "TrackSegment");
  const auto length = segment == nullptr ? std::nullopt : integerOf(*segment, "ComponentLength");
  return length.value_or(-1) < 0 ? std::nullopt : length;
}

std::optional<Types::UniversalLabel> dataDefinitionOf(const Model& model, const MetadataSet& track) {
  const auto* segment = model.target(track, "TrackSegment");
  return segment == nullptr ? std::nullopt : labelOf(*segment, "ComponentDataDefinition");
}

bool isEssenceTrack(const Model& model, const MetadataSet& track) {
  const auto definition = dataDefinitionOf(model, track);
  return definition && essenceKindOf(*definition) != EssenceKind::kNone;
}

const MetadataSet* linkedTrackOf(const PlacedDescriptor& descriptor) {
  const auto& tracks = descriptor.package->byTrackID;
  const auto found = tracks.find(integerOf(*descriptor.set, "LinkedTrackID").value_or(0));
  return found == tracks.end() ? nullptr : found->second;
}

std::vector<const MetadataSet*> storedPackages(const Model& model) {
  const auto* preface = model.preface();
  const auto* storage = preface == nullptr ? nullptr : model.target(*preface, "ContentStorageObject");
  return storage == nullptr ? std::vector<const MetadataSet*>() : model.targets(*storage, "Packages");
}

bool areEqual(const Types::Rational& left, const Types::Rational& right) {
  return int64{left.numerator()} * right.denominator() == int64{right.numerator()} * left.denominator();
}

std::optional<Types::UniversalLabel> patternOf(const Model& model) {
  return model.preface() == nullptr ? std::nullopt : labelOf(*model.preface(), "OperationalPattern");
}

}  // namespace Vantor::Edit
