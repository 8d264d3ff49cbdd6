#include "ImportCommand.h"

#include "CommonOptions.h"
#include "Core/DataIO/File.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "Core/Platform/Path.h"
#include "ErrorText.h"
#include "XML2Partition.h"
#include "XMLUtils/DocumentVocabulary.h"
#include "XMLUtils/UnicodeString.h"

namespace Vantor::Tool {

ImportCommand::ImportCommand(CLI::App& program)
    : Command(program, "import", "Write the header metadata of an XML document as an MXF file") {
  addInput(app(), input(), "XML file");
  app().add_option("-o,--output", output_, "Write to this file")->required()->type_name("OUTPUT.mxf");
  dictionary_.addDictionary(app());
}

void ImportCommand::run() const {
  refuseSameFile(input(), output_);
  const XMLUtils::UnicodeString path(Platform::pathToWstring(input()));
  const auto vocabulary = XMLUtils::vocabularyOfFile(path.utf16());
  PartitionMetadata metadata(dictionary_.load(vocabulary.value_or(MetaMetadata::Vocabulary::kLegacy)));
  XML2Partition::getPartitionMetadataFromFile(path.utf16(), &metadata);
  DataIO::File::AtomicFile file(output_);
  MXF::writeHeaderOnlyFile(metadata, MXF::SetOrder::kSerialization, file);
  file.commit();
}

}  // namespace Vantor::Tool
