#include "VerifyCommand.h"

#include <string>

#include "CommonOptions.h"
#include "ComparisonText.h"
#include "Core/Comparison/PartitionComparison.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "DiagnosticText.h"
#include "ErrorText.h"
#include "LosslessXML.h"
#include "StandardStreams.h"
#include "StoppedChange.h"
#include "XML2Partition.h"
#include "XMLBuilder.h"
#include "XMLUtils/EncodingType.h"

namespace Vantor::Tool {

namespace {

std::string linesOf(const Diagnostics& diagnostics) {
  std::string lines;
  for (auto diagnostic : diagnostics) {
    diagnostic.place.line = 0;  // of a document in memory
    lines += "note: " + describeForUser(diagnostic) + "\n";
  }
  return lines;
}

}  // namespace

VerifyCommand::VerifyCommand(CLI::App& program)
    : Command(program, "verify", "Print what the metadata of a partition lose on the way through XML and back") {
  addInput(app(), input(), "MXF file");
  app().add_flag("--flat", flat_, "Write sets behind those that refer to them, not inside");
  auto* exact = app().add_flag("--exact", exact_, "Write and read the exact form, which loses some metadata");
  app()
      .add_flag("--strict", strict_, "Fail also on content of the document that occurs twice or\nmeans nothing")
      ->excludes(exact);
  addPartition(app(), partition_);
  dictionary_.addVocabulary(app());
  dictionary_.addDictionary(app());
}

void VerifyCommand::run() const {
  refuseStoppedChange(input());
  const auto dictionary = dictionary_.load();
  const auto metadata = MXF::readHeaderMetadata(input(), dictionary, partition_);
  PartitionMetadata copy(dictionary);
  const auto diagnostics = exact_ ? roundTripExactly(*metadata, copy) : roundTrip(*metadata, copy);
  const auto comparison = comparePartitions(*metadata, copy);
  writeStandardOutput(linesOf(diagnostics) + describe(comparison));
  if (strict_ && !diagnostics.empty()) throw CommandError(countOf(diagnostics));
  if (!comparison.isEqual()) throw CommandError("the metadata of the " + partition_.name() + " comes back changed");
}

Diagnostics VerifyCommand::roundTrip(PartitionMetadata& metadata, PartitionMetadata& copy) const {
  LosslessXML::ExportOptions options;
  options.nestStrongReferences = !flat_;
  const auto document = LosslessXML::exportBytes(metadata, options, XMLUtils::EncodingType::kUTF8);
  requireDocument(!document.empty());
  return LosslessXML::Document::fromBytes(document.data(), document.size()).import(copy).diagnostics;
}

Diagnostics VerifyCommand::roundTripExactly(PartitionMetadata& metadata, PartitionMetadata& copy) const {
  wstring document;
  XMLBuilder::partition2XML(&metadata, !flat_, false, XMLUtils::EncodingType::kUTF8, document);
  requireDocument(!document.empty());
  XML2Partition::getPartitionMetadataFromString(document, &copy);
  return {};
}

void VerifyCommand::requireDocument(bool isThere) const {
  if (!isThere) throw CommandError("the " + partition_.name() + " has no Preface to start from");
}

}  // namespace Vantor::Tool
