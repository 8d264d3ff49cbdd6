#pragma once

#include <optional>

#include "Edit/Rules/Model.h"

namespace Vantor::Edit {

/// The length of a track in its edit units; none where it is unknown.
std::optional<int64> lengthOf(const Model& model, const MetadataSet& track);

/// Whether a track has picture, sound or other essence, rather than timecode or descriptions.
bool isEssenceTrack(const Model& model, const MetadataSet& track);

/// The track whose essence a descriptor describes; null where it names none of its package.
const MetadataSet* linkedTrackOf(const PlacedDescriptor& descriptor);

bool areEqual(const Types::Rational& left, const Types::Rational& right);

}  // namespace Vantor::Edit
