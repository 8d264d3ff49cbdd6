#pragma once

#include <array>
#include <optional>
#include <vector>

#include "Core/MXF/TrackKind.h"
#include "Edit/Rules/Model.h"

namespace Vantor::Edit {

/// The length of a track in its edit units; none where it is unknown.
std::optional<int64> lengthOf(const Model& model, const MetadataSet& track);

/// The data definition of a track's segment.
std::optional<Types::UniversalLabel> dataDefinitionOf(const Model& model, const MetadataSet& track);
/// Whether a track has picture, sound or other essence, rather than timecode or descriptions.
bool isEssenceTrack(const Model& model, const MetadataSet& track);

/// The track whose essence a descriptor describes; null where it names none of its package.
const MetadataSet* linkedTrackOf(const PlacedDescriptor& descriptor);

/// The packages that the content storage lists, each once per reference.
std::vector<const MetadataSet*> storedPackages(const Model& model);

/// The operational pattern of the Preface; none where it is missing, or no label.
std::optional<Types::UniversalLabel> patternOf(const Model& model);

/// @name Rates and ratios
/// @{
bool areEqual(const Types::Rational& left, const Types::Rational& right);
inline bool isPositive(const Types::Rational& rate) { return rate.numerator() > 0 && rate.denominator() > 0; }
/// Calls `visit(set, property, rate)` for the sets that have one of the properties.
template <std::size_t kCount, class Visit>
void forEachRate(const Model& model, const std::array<const char*, kCount>& properties, Visit&& visit) {
  for (const auto* set : model.sets()) {
    for (const char* property : properties) {
      const auto* rate = valueOf<Types::Rational>(*set, property);
      if (rate != nullptr) visit(*set, property, *rate);
    }
  }
}
/// @}

}  // namespace Vantor::Edit
