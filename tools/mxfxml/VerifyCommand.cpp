#include "Command.h"

#include <string>

#include "CommonOptions.h"
#include "ComparisonText.h"
#include "Core/Comparison/PartitionComparison.h"
#include "DiagnosticText.h"
#include "DictionaryOptions.h"
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

class VerifyCommand final : public Command {
 public:
  explicit VerifyCommand(CLI::App& program)
      : Command(program, "verify", "Print what the metadata of a partition lose on the way through XML and back") {
    addInput("MXF file");
    app().add_flag("--flat", flat_, "Write sets behind those that refer to them, not inside");
    auto* exact = app().add_flag("--exact", exact_, "Write and read the exact form, which loses some metadata");
    app()
        .add_flag("--strict", strict_, "Fail also on content of the document that occurs twice or\nmeans nothing")
        ->excludes(exact);
    addPartition(app(), partition_);
    dictionary_.addVocabulary(app());
    dictionary_.addDictionary(app());
    dictionary_.addOwnDictionary(app());
    addExamples({"verify in.mxf", "verify in.mxf --flat --vocabulary st434-2014"});
  }

  ExitCode run() const override {
    refuseStoppedChange(input());
    const auto metadata = dictionary_.read(DictionaryOptions::partitionOf(input(), partition_));
    if (metadata->preface() == nullptr) throw CommandError(describe(partition_) + " has no Preface to start from");
    PartitionMetadata copy(metadata->partitionDictionary().dictionary());
    const auto diagnostics = exact_ ? roundTripExactly(*metadata, copy) : roundTrip(*metadata, copy);
    const auto comparison = comparePartitions(*metadata, copy);
    writeStandardOutput(linesOf(diagnostics) + describe(comparison));
    if (strict_ && !diagnostics.empty()) throw CommandError(countOf(diagnostics));
    if (!comparison.isEqual()) throw CommandError("the metadata of " + describe(partition_) + " comes back changed");
    return kSuccess;
  }

 private:
  Diagnostics roundTrip(PartitionMetadata& metadata, PartitionMetadata& copy) const {
    LosslessXML::ExportOptions options;
    options.nestStrongReferences = !flat_;
    const auto document = LosslessXML::exportBytes(metadata, options, XMLUtils::EncodingType::kUTF8);
    return LosslessXML::Document::fromBytes(document.data(), document.size()).import(copy).diagnostics;
  }

  Diagnostics roundTripExactly(PartitionMetadata& metadata, PartitionMetadata& copy) const {
    wstring document;
    XMLBuilder::partition2XML(&metadata, !flat_, false, XMLUtils::EncodingType::kUTF8, document);
    XML2Partition::getPartitionMetadataFromString(document, &copy);
    return {};
  }

  bool flat_ = false;
  bool exact_ = false;
  bool strict_ = false;
  MXF::PartitionChoice partition_;
  DictionaryOptions dictionary_;
};

}  // namespace

std::unique_ptr<Command> verifyCommand(CLI::App& program) { return std::make_unique<VerifyCommand>(program); }

}  // namespace Vantor::Tool
