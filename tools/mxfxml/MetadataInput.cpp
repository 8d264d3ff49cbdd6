#include "MetadataInput.h"

#include "Core/MXF/HeaderMetadataReader.h"
#include "LosslessXML.h"
#include "StoppedChange.h"
#include "XMLUtils/InputFile.h"

namespace Vantor::Tool {

namespace {

std::unique_ptr<PartitionMetadata> readDocument(const Path& file, const DictionaryOptions::LoadFor& load,
                                                Diagnostics& diagnostics) {
  const auto document = LosslessXML::Document::fromFile(file);
  auto metadata = std::make_unique<PartitionMetadata>(load(document.vocabulary()));
  diagnostics = document.import(*metadata).diagnostics;
  return metadata;
}

}  // namespace

DictionaryOptions::Source metadataSource(const Path& file, const MXF::PartitionChoice& partition,
                                         Diagnostics& diagnostics) {
  const auto read = [=, &diagnostics](const DictionaryOptions::LoadFor& load) {
    if (XMLUtils::looksLikeXML(file)) return readDocument(file, load, diagnostics);
    refuseStoppedChange(file);
    return MXF::readHeaderMetadata(file, load({}), partition);
  };
  return {file, read};
}

}  // namespace Vantor::Tool
