#pragma once

#include <optional>

#include "Core/Metadata/PartitionMetadata.h"
#include "Edit/Merge.h"

namespace Vantor::Edit {

/// Whether a label stands for the scheme of a descriptive framework. False for a framework that no register has, and
/// for one without a scheme in the registers.
/// @param framework  the key of its set.
bool isSchemeOf(const Types::UniversalLabel& label, const KLV::Key& framework);

/// Lists the schemes of the descriptive frameworks that an edit has brought in the Preface's DescriptiveSchemes, and
/// takes out those whose last framework is gone (ST 377-1). A list that the edit has changed itself stays as it is, and
/// so do the schemes of frameworks that no register has.
/// @return the changed property; none when nothing was to be done.
std::optional<MergePlace> followFrameworks(const PartitionMetadata& before, PartitionMetadata& after);

}  // namespace Vantor::Edit
