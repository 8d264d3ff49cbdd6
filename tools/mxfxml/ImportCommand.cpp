#include "ImportCommand.h"

#include "CommonOptions.h"
#include "Core/DataIO/File.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "Core/Platform/Path.h"
#include "DiagnosticText.h"
#include "ErrorText.h"
#include "XML2Partition.h"
#include "XMLUtils/DocumentVocabulary.h"
#include "XMLUtils/UnicodeString.h"

namespace Vantor::Tool {

ImportCommand::ImportCommand(CLI::App& program)
    : Command(program, "import", "Write the header metadata of an XML document as an MXF file") {
  addInput(app(), input(), "XML file");
  app().add_option("-o,--output", output_, "Write to this file")->required()->type_name("OUTPUT.mxf");
  auto* exact = app().add_flag("--exact", exact_, "Read the XML to the letter of its exact form, with what that loses");
  app()
      .add_flag("--strict", strict_,
                "Fail where the document says something twice or that cannot be,\ninstead of "
                "leaving it out with a warning")
      ->excludes(exact);
  dictionary_.addDictionary(app());
}

void ImportCommand::run() const {
  refuseSameFile(input(), output_);
  const XMLUtils::UnicodeString path(Platform::pathToWstring(input()));
  const auto vocabulary = XMLUtils::vocabularyOfFile(path.utf16());
  PartitionMetadata metadata(dictionary_.load(vocabulary.value_or(MetaMetadata::Vocabulary::kLegacy)));
  read(metadata);
  DataIO::File::AtomicFile file(output_);
  MXF::writeHeaderOnlyFile(metadata, MXF::SetOrder::kSerialization, file);
  file.commit();
}

void ImportCommand::read(PartitionMetadata& metadata) const {
  const XMLUtils::UnicodeString path(Platform::pathToWstring(input()));
  if (exact_) {
    XML2Partition::getPartitionMetadataFromFile(path.utf16(), &metadata);
    return;
  }
  const auto import = XML2Partition::importLosslesslyFromFile(path.utf16(), &metadata);
  for (const auto& diagnostic : import.diagnostics) {
    printMessage(input().u8string() + ": " + (strict_ ? "" : "warning: ") + describe(diagnostic));
  }
  if (!strict_ || import.diagnostics.empty()) return;
  const auto count = std::to_string(import.diagnostics.size());
  throw CommandError(count + (count == "1" ? " thing is" : " things are") +
                     " wrong with the document; nothing is written");
}

}  // namespace Vantor::Tool
