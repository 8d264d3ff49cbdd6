#pragma once

#include "CommandLine/DictionaryOptions.h"
#include "Core/MXF/PartitionChoice.h"
#include "Input/InputDocument.h"

/// Header metadata from files of any kind.
namespace Vantor::Tool {

/// The metadata of a file, MXF, XML or JSON.
/// @param partition  of an MXF file.
/// @param problems   receives those of a document, from the last time that it is read; outlives the source.
/// @param missing    of an MXF file, as in `readPartition`; outlives the source.
DictionaryOptions::Source metadataSource(const Path& file, const MXF::PartitionChoice& partition,
                                         InputProblems& problems, Missing* missing = nullptr);

/// Prints them. @throws CommandError for names that the dictionary lacks, and with `areErrors` for any.
void printProblems(const Path& file, const InputProblems& problems, bool areErrors);

}  // namespace Vantor::Tool
