#pragma once

#include <vector>

#include "Core/Metadata/PartitionMetadata.h"
#include "Edit/Merge.h"

/// What hangs together with an edit.
namespace Vantor::Edit {

/// Changes what refers to something that an edit has renamed, or lists what it has brought or taken away:
///
/// - a package with another PackageID: SourcePackageID, LinkedPackageID and every other UMID that was this one;
/// - a track with another TrackID: SourceTrackID, DescribedTrackIDs, LinkedTrackID and the other numbers of tracks, of
///   sets that mean this track: by the package that they name, else by the one that they belong to (ST 377-1);
/// - the first descriptive framework of a scheme, or the last one that is gone: the labels in DescriptiveSchemes.
///
/// What the edit has changed itself stays as it is, and so does what the state before leaves ambiguous: a PackageID
/// that several packages have, or a TrackID that several tracks of a package have.
/// @return the changed properties.
std::vector<MergePlace> completeEdit(const PartitionMetadata& before, PartitionMetadata& after);

}  // namespace Vantor::Edit
