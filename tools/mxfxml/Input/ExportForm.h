#pragma once

#include <optional>
#include <string>

#include "CommandLine/DictionaryOptions.h"
#include "Core/DataIO/DataSink.h"
#include "Core/MXF/PartitionChoice.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Input/InputDocument.h"
#include "XMLUtils/EncodingType.h"

/// Documents that lose nothing: what `export` writes, and `edit` opens in an editor.
namespace Vantor::Tool {

struct ExportForm {
  DocumentFormat format = DocumentFormat::kXML;
  bool isFlat = false;            ///< XML only, as the next one and the encoding
  bool isStructuralOnly = false;  ///< leaves out references to sets that are not structural
  XMLUtils::EncodingType encoding = XMLUtils::EncodingType::kUTF8Indented;
  std::optional<std::string> start = {};  ///< where it starts: an InstanceUID, or a name; none for the Preface
  MXF::PartitionChoice partition = {};    ///< the one that the metadata are of
};

/// The options --format and --start.
void addFormat(CLI::App& command, DocumentFormat& format);
void addStart(CLI::App& command, std::optional<std::string>& start);

/// The set that a document starts from; null for the Preface, or in JSON for all sets.
/// @param dictionary  finds the names that a file has of its own, for a hint. @param file  whose metadata these are.
/// @throws CommandError for a text that names none, and where XML has no Preface to start from.
const MetadataSet* startOf(const PartitionMetadata& metadata, const ExportForm& form,
                           const DictionaryOptions& dictionary, const Path& file);

/// Writes the document. @param start  as `startOf` has it.
/// @throws CommandError for JSON from a set that no InstanceUID identifies; what the writers and the sink throw.
void writeDocument(PartitionMetadata& metadata, const ExportForm& form, const MetadataSet* start,
                   DataIO::DataSink& sink);

}  // namespace Vantor::Tool
