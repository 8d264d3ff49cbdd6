#pragma once

#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Path.h"
#include "Report/DiagnosticText.h"

namespace Vantor::Tool {

/// Warns of names that an export with --own-dictionary gave a document.
/// @param metadata  read from the document, or those of the file that it goes into.
void warnOfOwnNames(const Path& document, const Diagnostics& diagnostics, const PartitionMetadata& metadata);

}  // namespace Vantor::Tool
