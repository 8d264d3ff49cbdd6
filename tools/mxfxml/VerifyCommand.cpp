#include "CommandLine/Command.h"

#include <memory>
#include <string>

#include "CommandLine/CommonOptions.h"
#include "CommandLine/DictionaryOptions.h"
#include "CommandLine/LimitOptions.h"
#include "Core/Comparison/PartitionComparison.h"
#include "Core/Platform/Path.h"
#include "Input/BetterPartition.h"
#include "Input/Salvage.h"
#include "Input/StoppedChange.h"
#include "LosslessXML.h"
#include "Report/ComparisonText.h"
#include "Report/DiagnosticText.h"
#include "Report/JSONOutput.h"
#include "Terminal/ErrorText.h"
#include "Terminal/StandardStreams.h"
#include "XML2Partition.h"
#include "XMLBuilder.h"
#include "XMLUtils/EncodingType.h"

namespace Vantor::Tool {

namespace {

/// The document is in memory only, so its line numbers mean nothing to the user.
Diagnostics withoutLines(Diagnostics diagnostics) {
  for (auto& diagnostic : diagnostics.listed) diagnostic.place.line = 0;
  return diagnostics;
}

std::string linesOf(const Diagnostics& diagnostics) {
  std::string lines;
  for (const auto& diagnostic : withoutLines(diagnostics).listed) {
    lines += "note: " + describeForUser(diagnostic) + "\n";
  }
  if (diagnostics.further != 0) lines += "note: and " + std::to_string(diagnostics.further) + " more\n";
  return lines;
}

class VerifyCommand final : public Command {
 public:
  explicit VerifyCommand(CLI::App& program)
      : Command(program, "verify", "Print what the metadata of a partition lose on the way through XML and back") {
    addInput("MXF file, or - for standard input", Dash::kInput);
    app().add_flag("--flat", flat_, "Write sets behind those that refer to them, not inside");
    auto* exact = app().add_flag("--exact", exact_, "Write and read the exact form, which loses some metadata");
    app()
        .add_flag("--strict", strict_, "Fail also on content of the document that occurs twice or\nmeans nothing")
        ->excludes(exact);
    addPartition(app(), partition_);
    salvage_.add(app());
    addJSON(app(), isJSON_);
    dictionary_.addVocabulary(app());
    dictionary_.addDictionary(app());
    dictionary_.addOwnDictionary(app());
    addLimits(app());
    addExamples({"verify in.mxf", "verify in.mxf --flat --vocabulary st434-2014"});
  }

  ExitCode run() const override {
    refuseStoppedChange(input());
    const auto partition = partitionIn(input(), partition_);
    Missing missing;
    const auto metadata =
        dictionary_.read(DictionaryOptions::partitionOf(input(), partition, {}, salvage_.placeFor(missing)));
    requireSomething(*metadata, missing);
    noteBetterPartition(input(), app().count("--partition") != 0);
    if (metadata->preface() == nullptr) throw CommandError(describe(partition) + " has no Preface to start from");
    Diagnostics diagnostics;
    const auto copy = exact_ ? roundTripExactly(*metadata) : roundTrip(*metadata, diagnostics);
    const auto comparison = comparePartitions(*metadata, *copy);
    print(partition, diagnostics, comparison, missing);
    const auto code = reportMissing(input(), *metadata, missing);
    if (strict_ && !diagnostics.empty()) throw CommandError(countOf(diagnostics));
    if (!comparison.isEqual()) throw CommandError("the metadata of " + describe(partition) + " comes back changed");
    return code;
  }

 private:
  using Metadata = std::unique_ptr<PartitionMetadata>;

  void print(const MXF::PartitionChoice& partition, const Diagnostics& diagnostics,
             const PartitionComparison& comparison, const Missing& missing) const {
    if (!isJSON_) return writeStandardOutput(linesOf(diagnostics) + describe(comparison));
    auto json = formatted("verify").add("file", Platform::pathToUTF8(input())).add("partition", partition.text());
    json.add("form", exact_ ? "exact" : "lossless").add("nested", !flat_);
    json.add("notes", jsonOf(withoutLines(diagnostics)));
    addComparison(comparison, json);
    addMissing(missing, json);
    printJSON(json);
  }

  /// @param diagnostics  receives those of the document.
  Metadata roundTrip(PartitionMetadata& metadata, Diagnostics& diagnostics) const {
    LosslessXML::ExportOptions options;
    options.nestStrongReferences = !flat_;
    options.limits = limits();
    const auto bytes = LosslessXML::exportBytes(metadata, options, XMLUtils::EncodingType::kUTF8);
    const auto document = LosslessXML::Document::fromBytes(bytes.data(), bytes.size(), limits());
    return readBack([&](PartitionMetadata& copy) { diagnostics = diagnosticsOf(document.import(copy)); });
  }

  Metadata roundTripExactly(PartitionMetadata& metadata) const {
    wstring document;
    XMLBuilder::partition2XML(&metadata, metadata.preface(), !flat_, false, XMLUtils::EncodingType::kUTF8, document,
                              limits());
    return readBack(
        [&](PartitionMetadata& copy) { XML2Partition::getPartitionMetadataFromString(document, &copy, limits()); });
  }

  /// As an import does: with the definitions of the document itself.
  template <class Read>
  Metadata readBack(Read read) const {
    return dictionary_.readCopy({input(), [&](const DictionaryOptions::LoadFor& load) {
                                   auto copy = std::make_unique<PartitionMetadata>(load({}));
                                   read(*copy);
                                   return copy;
                                 }});
  }

  bool flat_ = false;
  bool exact_ = false;
  bool strict_ = false;
  bool isJSON_ = false;
  MXF::PartitionChoice partition_;
  SalvageOption salvage_;
  DictionaryOptions dictionary_;
};

}  // namespace

std::unique_ptr<Command> verifyCommand(CLI::App& program) { return std::make_unique<VerifyCommand>(program); }

}  // namespace Vantor::Tool
