#pragma once

#include "Core/Platform/Types.h"
#include "Core/Types/UniversalLabel.h"

namespace Vantor::MXF {

/// What a track has. `kData` is essence that is neither picture nor sound.
enum class TrackKind : uint8 { kPicture, kSound, kData, kTimecode, kDescriptive, kOther };

/// The kind that a data definition (ComponentDataDefinition of the track's segment) stands for: labels of SMPTE ST 400,
/// and the identifiers of picture, sound and timecode that files had before there were labels for them. Essence of a
/// kind that ST 400 does not know is `kData`; `kOther` for a label that is no data definition.
TrackKind trackKindOf(const Types::UniversalLabel& dataDefinition);

/// Picture, sound or data, rather than timecode or descriptions.
inline bool isEssence(TrackKind kind) {
  return kind == TrackKind::kPicture || kind == TrackKind::kSound || kind == TrackKind::kData;
}

}  // namespace Vantor::MXF
