#pragma once

#include <optional>

#include "Core/Comparison/SetPairing.h"
#include "Core/MXF/PartitionChoice.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Path.h"

namespace Vantor::Tool {

/// The Identification at the end of the Preface's list, if --sign added it; else null.
MetadataSet* lastSignature(const PartitionMetadata& metadata);

/// Whether a file has an edit already: its metadata are the edited ones, or differ from these by nothing but signatures
/// of this program, which --sign gave it (`Edit::sign`).
/// @param choice   the partition of the file; none for the header partition.
/// @param edited   what the edit leads to.
/// @param pairing  `kByPlace` where new sets get other InstanceUIDs each time.
/// @throws what `MXF::readHeaderMetadata` throws.
bool isEditThere(const Path& file, const std::optional<MXF::PartitionChoice>& choice, const PartitionMetadata& edited,
                 Pairing pairing);

}  // namespace Vantor::Tool
