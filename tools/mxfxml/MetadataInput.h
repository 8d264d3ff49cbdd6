#pragma once

#include <memory>

#include "Core/MXF/PartitionChoice.h"
#include "DiagnosticText.h"
#include "DictionaryOptions.h"

/// Header metadata from files of either kind.
namespace Vantor::Tool {

/// The metadata of a file, MXF or XML.
/// @param partition    of an MXF file.
/// @param diagnostics  receives those of a document, from the last time that it is read; outlives the source.
DictionaryOptions::Source metadataSource(const Path& file, const MXF::PartitionChoice& partition,
                                         Diagnostics& diagnostics);

}  // namespace Vantor::Tool
