#include "VerifyCommand.h"

#include <string>

#include "CommonOptions.h"
#include "ComparisonText.h"
#include "Core/Comparison/PartitionComparison.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "DiagnosticText.h"
#include "DocumentSize.h"
#include "ErrorText.h"
#include "LosslessXML.h"
#include "StandardStreams.h"
#include "StoppedChange.h"
#include "XML2Partition.h"
#include "XMLBuilder.h"
#include "XMLUtils/EncodingType.h"
#include "XMLUtils/UnicodeString.h"

namespace Vantor::Tool {

namespace {

/// @return what the reader has to say.
Diagnostics readBack(const wstring& document, bool exactly, PartitionMetadata& copy) {
  if (exactly) {
    XML2Partition::getPartitionMetadataFromString(document, &copy);
    return {};
  }
  const XMLUtils::UnicodeString text(document);
  return LosslessXML::Document::fromBytes(text.utf16(), documentSize(text.utf16Size())).import(copy).diagnostics;
}

std::string linesOf(const Diagnostics& diagnostics) {
  std::string lines;
  for (auto diagnostic : diagnostics) {
    diagnostic.place.line = 0;  // of a document that nobody sees
    lines += "note: " + Tool::describe(diagnostic) + "\n";
  }
  return lines;
}

}  // namespace

VerifyCommand::VerifyCommand(CLI::App& program)
    : Command(program, "verify", "Tell what of the metadata of a partition is lost on its way through XML and back") {
  addInput(app(), input(), "MXF file");
  app().add_flag("--flat", flat_, "Write the targets of strong references beside the sets that refer to them");
  auto* exact = app().add_flag("--exact", exact_, "Read the XML to the letter of its exact form, with what that loses");
  app()
      .add_flag("--strict", strict_,
                "Fail, too, where the document says something twice or that\ncannot be, although nothing is lost")
      ->excludes(exact);
  addPartition(app(), partition_);
  dictionary_.addVocabulary(app());
  dictionary_.addDictionary(app());
}

void VerifyCommand::run() const {
  refuseStoppedChange(input());
  const auto dictionary = dictionary_.load();
  const auto metadata = MXF::readHeaderMetadata(input(), dictionary, partition_);
  wstring document;
  XMLBuilder::partition2XML(metadata.get(), !flat_, false, XMLUtils::EncodingType::kUTF8, document);
  if (document.empty()) throw CommandError("the " + partition_.name() + " has no Preface to start from");
  PartitionMetadata copy(dictionary);
  const auto diagnostics = readBack(document, exact_, copy);
  const auto comparison = comparePartitions(*metadata, copy);
  writeStandardOutput(linesOf(diagnostics) + describe(comparison));
  if (strict_ && !diagnostics.empty()) throw CommandError(countOf(diagnostics));
  if (!comparison.isEqual()) throw CommandError("the metadata of the " + partition_.name() + " comes back changed");
}

}  // namespace Vantor::Tool
