#include "Input/MetadataInput.h"

#include "Input/BetterPartition.h"
#include "Input/StoppedChange.h"
#include "Terminal/StandardInput.h"

namespace Vantor::Tool {

namespace {

std::unique_ptr<PartitionMetadata> readDocument(const InputDocument& document, const DictionaryOptions::LoadFor& load,
                                                InputProblems& problems) {
  auto metadata = std::make_unique<PartitionMetadata>(load(document.vocabulary()));
  document.import(*metadata, problems);
  return metadata;
}

}  // namespace

DictionaryOptions::Source metadataSource(const Path& file, const MXF::PartitionChoice& partition,
                                         InputProblems& problems, Missing* missing) {
  const auto read = [=, &problems](const DictionaryOptions::LoadFor& load) {
    if (const auto format = documentFormatOf(file)) return readDocument({file, *format}, load, problems);
    refuseStoppedChange(file);
    return readPartition(file, load({}), partitionIn(file, partition), missing);
  };
  return {file, read, missing};
}

void printProblems(const Path& file, const InputProblems& problems, bool areErrors) {
  refuseUnknown(file, problems.unknown);
  printDiagnostics(file, problems, areErrors);
}

}  // namespace Vantor::Tool
