#pragma once

#include <optional>
#include <vector>

#include "Edit/Rules/Model.h"

namespace Vantor::Edit {

/// The length of a track in its edit units; none where it is unknown.
std::optional<int64> lengthOf(const Model& model, const MetadataSet& track);

/// Whether a track has picture, sound or other essence, rather than timecode or descriptions.
bool isEssenceTrack(const Model& model, const MetadataSet& track);

/// The descriptor of a package, and those that it is made of.
std::vector<const MetadataSet*> descriptorsOf(const Model& model, const Package& package);

bool areEqual(const Types::Rational& left, const Types::Rational& right);

}  // namespace Vantor::Edit
