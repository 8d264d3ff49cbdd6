#include "CommandLine/Command.h"

#include <optional>

#include "CommandLine/CommonOptions.h"
#include "CommandLine/DictionaryOptions.h"
#include "CommandLine/LimitOptions.h"
#include "Input/BetterPartition.h"
#include "Input/ExportForm.h"
#include "Input/Salvage.h"
#include "Input/StoppedChange.h"
#include "Terminal/ErrorText.h"
#include "Terminal/StandardStreams.h"
#include "XMLBuilder.h"
#include "XMLUtils/DomToBuffer.h"

namespace Vantor::Tool {

namespace {

using XMLUtils::EncodingType;

class ExportCommand final : public Command {
 public:
  explicit ExportCommand(CLI::App& program)
      : Command(program, "export", "Write the header metadata of a partition as XML or JSON") {
    addInput("MXF file, or - for standard input", Dash::kInput);
    addFile(app(), "-o,--output", output_, "Write to this file instead of standard output, which is -", Dash::kOutput);
    addFormat(app(), form_.format);
    app().add_flag("--flat", form_.isFlat, "Write sets behind those that refer to them, not inside");
    app().add_flag("--structural-only", form_.isStructuralOnly, "Leave out references to sets that are not structural");
    addStart(app(), form_.start);
    app().add_flag("--exact", exact_, "Write the exact form, which loses some metadata");
    addChoice(app(), "--encoding", form_.encoding, "encoding",
              {{"utf-8", EncodingType::kUTF8Indented}, {"utf-16", EncodingType::kUTF16Indented}},
              "utf-8 (default), or utf-16 in little-endian order");
    addPartition(app(), form_.partition);
    salvage_.add(app());
    dictionary_.addVocabulary(app());
    dictionary_.addDictionary(app());
    dictionary_.addOwnDictionary(app());
    addLimits(app());
    addExamples(
        {"export in.mxf", "export in.mxf -o out.xml", "export in.mxf --flat --partition footer", "export - < in.mxf"});
  }

  ExitCode run() const override {
    if (output_) refuseSameFile(input(), *output_);
    refuseStoppedChange(input());
    if (output_) refuseStoppedChange(*output_);
    const bool isForXML = form_.isFlat || form_.isStructuralOnly || exact_ || form_.encoding != ExportForm().encoding;
    if (form_.format == DocumentFormat::kJSON && isForXML) {
      throw UsageError("--flat, --structural-only, --exact and --encoding are for XML");
    }
    auto form = form_;
    form.partition = partitionIn(input(), form_.partition);
    Missing missing;
    const auto metadata =
        dictionary_.read(DictionaryOptions::partitionOf(input(), form.partition, {}, salvage_.placeFor(missing)));
    requireSomething(*metadata, missing);
    noteBetterPartition(input(), app().count("--partition") != 0);
    const auto* start = startOf(*metadata, form, dictionary_, input());
    if (exact_) {
      writeOutput(output_, exactDocument(*metadata, start));
    } else {
      writeOutput(output_, [&](auto& sink) { writeDocument(*metadata, form, start, sink); });
    }
    return reportMissing(input(), *metadata, missing);
  }

 private:
  std::string exactDocument(PartitionMetadata& metadata, const MetadataSet* start) const {
    if (start == nullptr) start = metadata.preface();
    const auto document = XMLBuilder::partition2XML(&metadata, start, !form_.isFlat, form_.isStructuralOnly, limits());
    std::string bytes;
    XMLUtils::domToBytes(document.get(), bytes, form_.encoding, limits());
    return bytes;
  }

  std::optional<Path> output_;
  ExportForm form_;
  bool exact_ = false;
  SalvageOption salvage_;
  DictionaryOptions dictionary_;
};

}  // namespace

std::unique_ptr<Command> exportCommand(CLI::App& program) { return std::make_unique<ExportCommand>(program); }

}  // namespace Vantor::Tool
