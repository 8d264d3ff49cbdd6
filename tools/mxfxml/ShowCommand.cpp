#include <optional>
#include <string>

#include "CommandLine/Command.h"
#include "CommandLine/CommonOptions.h"
#include "CommandLine/DictionaryOptions.h"
#include "CommandLine/LimitOptions.h"
#include "Input/BetterPartition.h"
#include "Input/InputDocument.h"
#include "Input/MetadataInput.h"
#include "Report/DiagnosticText.h"
#include "Terminal/ErrorText.h"
#include "Terminal/StandardStreams.h"
#include "Tree/SetTree.h"
#include "Tree/TreeOutput.h"

namespace Vantor::Tool {

namespace {

class ShowCommand final : public Command {
 public:
  explicit ShowCommand(CLI::App& program)
      : Command(program, "show", "Print the sets of a file, MXF, XML or JSON, as a tree") {
    addInput("MXF, XML or JSON file, or - for standard input", Dash::kInput);
    auto* set = app()
                    .add_option("--set", set_,
                                "Only what this path chooses, and what is below, such as\nMaterialPackage/SourceClip")
                    ->type_name("PATH");
    hint(set, {CompletionHint::Kind::kSetPath});
    app().add_option("--depth", depth_, "How many levels of sets to show below the first one")->type_name("N");
    app().add_flag("--refs", showsReferences_, "Print InstanceUIDs, and the identifiers of all references");
    addColor(app(), color_);
    addPartition(
        app(), partition_,
        "Of an MXF file: header (default), footer, best for the one with\nthe best metadata, or a number in file "
        "order from 0, which is\nthe header partition");
    dictionary_.addDictionary(app());
    dictionary_.addOwnDictionary(app(), true);
    addLimits(app());
    addExamples({"show in.mxf", "show in.mxf --set MaterialPackage --depth 2", "show edited.xml --refs"});
  }

  ExitCode run() const override {
    if (partition_ && documentFormatOf(input())) throw UsageError("--partition is for MXF files");
    InputProblems problems;
    const auto partition = partition_.value_or(MXF::PartitionChoice());
    const auto metadata = dictionary_.read(metadataSource(input(), partition, problems));
    printProblems(input(), problems, false);
    if (!documentFormatOf(input())) noteBetterPartition(input(), partition_.has_value());
    const auto style = treeStyleFor(color_);
    writeStandardOutput(treeText(treeOf(*metadata, optionsFor(*metadata, style)), style));
    return kSuccess;
  }

 private:
  TreeOptions optionsFor(const PartitionMetadata& metadata, const TreeStyle& style) const {
    TreeOptions options;
    if (set_) {
      for (const auto& set : metadata.choose(*set_)) options.roots.push_back(&set);
    }
    options.depth = depth_;
    options.deepestBranch = deepestBranch(style);
    options.showsReferences = showsReferences_;
    options.arrow = arrowOf(style);
    return options;
  }

  std::optional<std::string> set_;
  std::optional<uint32> depth_;
  bool showsReferences_ = false;
  ColorChoice color_ = ColorChoice::kAuto;
  std::optional<MXF::PartitionChoice> partition_;
  DictionaryOptions dictionary_;
};

}  // namespace

std::unique_ptr<Command> showCommand(CLI::App& program) { return std::make_unique<ShowCommand>(program); }

}  // namespace Vantor::Tool
