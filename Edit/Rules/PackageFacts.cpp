#include "Edit/Rules/PackageFacts.h"

namespace Vantor::Edit {

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
  return definition && MXF::isEssence(MXF::trackKindOf(*definition));
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
