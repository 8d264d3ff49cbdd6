#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "CommandLine/Command.h"
#include "CommandLine/CommonOptions.h"
#include "CommandLine/DictionaryOptions.h"
#include "CommandLine/LimitOptions.h"
#include "Core/MXF/FileStructure.h"
#include "Core/Platform/Path.h"
#include "Input/BetterPartition.h"
#include "Input/Salvage.h"
#include "Input/StoppedChange.h"
#include "Look/MetadataText.h"
#include "Look/PartitionText.h"
#include "Look/SetList.h"
#include "Look/SummaryJSON.h"
#include "Look/SummaryText.h"
#include "Report/JSONOutput.h"
#include "Report/UnreadText.h"
#include "Summary/Summary.h"
#include "Terminal/ErrorText.h"
#include "Terminal/StandardInput.h"
#include "Terminal/StandardStreams.h"
#include "Terminal/Terminal.h"

namespace Vantor::Tool {

namespace {

constexpr const char* kNotRead = "; others of a pipe are not read";

/// Partitions in a row with one kind and status.
struct Run {
  KLV::PartitionKind kind;
  KLV::PartitionStatus status;
  std::size_t count;
};

/// "header closed complete, 5 body open incomplete, footer closed complete".
std::string partitionsText(const std::vector<Summary::Partition>& partitions) {
  std::vector<Run> runs;
  for (const auto& each : partitions) {
    const bool goesOn = !runs.empty() && runs.back().kind == each.kind && runs.back().status == each.status;
    if (goesOn) ++runs.back().count;
    if (!goesOn) runs.push_back({each.kind, each.status, 1});
  }
  std::string text;
  for (const auto& run : runs) {
    text += (text.empty() ? "" : ", ") + (run.count == 1 ? "" : std::to_string(run.count) + " ") + nameOf(run.kind) +
            " " + nameOf(run.status);
  }
  return text;
}

/// @param best  the last of those with the best metadata.
std::string bestText(const std::vector<Summary::Partition>& partitions, const Summary::Partition& best) {
  const auto& header = partitions.front();
  const bool isHeaderAsGood = &best != &header && header.hasMetadata && header.status == best.status;
  return (isHeaderAsGood ? "header and " + nameOf(best.kind) + " partitions" : nameOf(best.kind) + " partition") +
         ", " + nameOf(best.status);
}

FieldGroup fileGroup(const MXF::FileStructure& structure, const std::vector<Summary::Partition>& partitions,
                     const MXF::PartitionChoice& choice) {
  FieldGroup group{"File", {}};
  if (!isOfPipe(structure)) group.fields.push_back({"size", std::to_string(structure.fileSize) + " bytes"});
  if (structure.runIn != 0) group.fields.push_back({"run-in", std::to_string(structure.runIn) + " bytes"});
  if (structure.end != structure.fileSize) {
    group.fields.push_back({"sound up to", "offset " + std::to_string(structure.end)});
  }
  group.fields.push_back({"partitions", partitionsText(partitions) + (isOfPipe(structure) ? kNotRead : "")});
  const auto best = MXF::bestPartition(structure);
  if (best && !isOfPipe(structure)) group.fields.push_back({"best metadata", bestText(partitions, partitions[*best])});
  group.fields.push_back({"shown here", describe(choice)});
  return group;
}

/// "7: Preface.FormatVersion, Sequence.Duration, ... and 4 others: mxfxml show".
void addUnread(const char* name, std::size_t count, const std::vector<std::string>& properties, FieldGroup& group) {
  constexpr std::size_t kMostNamed = 2;
  if (count == 0) return;
  std::string text = std::to_string(count);
  for (std::size_t i = 0; i < std::min(properties.size(), kMostNamed); ++i) {
    text += (i == 0 ? ": " : ", ") + oneLine(properties[i]);
  }
  if (properties.size() > kMostNamed) {
    const auto others = properties.size() - kMostNamed;
    text += ", ... and " + std::to_string(others) + (others == 1 ? " other" : " others") + ": mxfxml show";
  }
  group.fields.push_back({name, text});
}

/// What the summary cannot show; no fields where there is nothing.
FieldGroup undecodedGroup(const PartitionMetadata& metadata) {
  const Counts counts(metadata);
  FieldGroup group{"Not decoded", {}};
  const auto add = [&group](const char* name, std::size_t count) {
    if (count != 0) group.fields.push_back({name, std::to_string(count)});
  };
  add("dark sets", total(counts.dark));
  addUnread("unknown properties", counts.unknownProperties, unreadNames(metadata, Unread::kUnknown), group);
  addUnread(kUnreadableText, counts.unreadableValues, unreadNames(metadata, Unread::kUnreadable), group);
  add("misplaced properties", counts.misplacedProperties);
  return group;
}

std::string countsOf(const Registers::FileDefinitions& own) {
  return std::to_string(own.sets) + " classes, " + std::to_string(own.properties) + " properties, " +
         std::to_string(own.types) + " types; " + std::to_string(own.problems.size()) + " problems";
}

JSON::Value definitionsOf(const Registers::FileDefinitions& own) {
  auto problems = JSON::Value::array();
  for (const auto& problem : own.problems) problems.append(oneLine(describe(problem)));
  return JSON::Value::object()
      .add("sets", uint64{own.sets})
      .add("properties", uint64{own.properties})
      .add("types", uint64{own.types})
      .add("problems", std::move(problems));
}

/// What a file defines of its own; nothing for one without definitions.
std::string describeOwn(const Registers::FileDefinitions& own) {
  if (!own.isThere) return {};
  constexpr std::size_t kMostListed = 5;
  const auto& problems = own.problems;
  std::string text = "\nown dictionary: " + countsOf(own) + "\n";
  for (std::size_t i = 0; i < std::min(kMostListed, problems.size()); ++i) {
    text += "  " + oneLine(describe(problems[i])) + "\n";
  }
  if (problems.size() > kMostListed) text += "  and others: mxfxml dictionary --learn lists all\n";
  return text;
}

class InfoCommand final : public Command {
 public:
  explicit InfoCommand(CLI::App& program)
      : Command(program, "info", "Print what people ask of a file first: title, times, tracks, who wrote it") {
    const auto take = [this](const std::vector<std::string>& names) {
      for (const auto& name : names) files_.push_back(inputPath(name));
    };
    app()
        .add_option_function<std::vector<std::string>>("INPUT", take, "MXF files, or - for standard input")
        ->required()
        ->type_name("")
        ->check(whyNoFileOrDash);
    addPartition(
        app(), partition_,
        "header, footer, best for the one with the best metadata, or a\nnumber in file order from 0, which is "
        "the header partition; by\ndefault the header partition, for the summary the footer or\nanother one in "
        "a better state");
    salvage_.add(app(), true);
    auto* partitions =
        app().add_flag("--partitions", partitions_, "Print the partitions and the number of sets of each kind instead");
    auto* sets = app().add_flag(
        "--sets", sets_,
        "List the sets instead, each as mxfxml set takes it, with what\nsets it apart from others of its "
        "kind, and the beginning of its\nInstanceUID, as mxfxml set takes it, too; wrapped to COLUMNS");
    auto* allSets = app().add_flag("--all-sets", allSets_, "The same with each definition of a MetaDictionary");
    auto* all = app().add_flag("--all", all_, "Print the summary, the partitions and the sets");
    addJSON(app(), isJSON_)->excludes(partitions)->excludes(sets)->excludes(allSets)->excludes(all);
    addColor(app(), color_);
    dictionary_.addDictionary(app());
    dictionary_.addOwnDictionary(app(), true);
    addLimits(app());
    addExamples({"info in.mxf", "info in.mxf --sets", "info --json a.mxf b.mxf"});
  }

  ExitCode run() const override {
    requireOneStandardInput(files_);
    const auto definitions = needsDefinitions() ? std::optional<Definitions>(dictionary_.definitions()) : std::nullopt;
    ExitCode code = kSuccess;
    auto list = JSON::Value::array();
    for (const auto& file : files_) {
      code = std::max(code, isJSON_ ? describe(file, list) : print(file, definitions));
    }
    if (isJSON_) printJSON(formatted("info").add("files", std::move(list)));
    return code;
  }

 private:
  bool listsSets() const { return sets_ || allSets_; }
  bool needsDefinitions() const { return partitions_ || listsSets() || all_; }

  /// A file that cannot be read does not keep the command from the others.
  ExitCode print(const Path& file, const std::optional<Definitions>& definitions) const {
    std::string text;
    try {
      refuseStoppedChange(file);
      text = textOf(file, definitions);
    } catch (...) {
      printMessage(currentExceptionText(file));
      return kFailure;
    }
    if (files_.size() > 1)
      text = (&file == &files_.front() ? "" : "\n") + oneLine(Platform::pathToUTF8(file)) + ":\n" + text;
    writeStandardOutput(text);
    return kSuccess;
  }

  /// What is missing goes to standard error.
  std::string textOf(const Path& file, const std::optional<Definitions>& definitions) const {
    const auto structure = readStructure(file);
    const bool isList = partitions_ || listsSets() || all_;
    std::string text;
    if (all_ || !isList) {
      const auto source = read(file, structure, chosen(file).value_or(betterThanHeader(structure)));
      text = summaryText(source);
      reportMissing(file, *source.metadata, source.missing);
    }
    if (all_) text += "\n";
    if (isList) {
      const auto source = read(file, structure, chosen(file).value_or(MXF::PartitionChoice()));
      text += listText(source, *definitions);
      noteBetterPartition(file, partition_ || all_);
      if (!all_) reportMissing(file, *source.metadata, source.missing);
    }
    return text;
  }

  std::optional<MXF::PartitionChoice> chosen(const Path& file) const {
    if (!partition_) return std::nullopt;
    return partitionIn(file, *partition_);
  }

  /// @param list  gets an object for the file.
  ExitCode describe(const Path& file, JSON::Value& list) const {
    auto json = JSON::Value::object().add("file", Platform::pathToUTF8(file));
    try {
      refuseStoppedChange(file);
      auto described = json;
      const auto structure = readStructure(file);
      const auto source = read(file, structure, chosen(file).value_or(betterThanHeader(structure)));
      addTo(described, source);
      list.append(std::move(described));
      reportMissing(file, *source.metadata, source.missing);
      return kSuccess;
    } catch (...) {
      const auto problem = currentExceptionText(file);
      printMessage(problem);
      list.append(json.add("problem", oneLine(problem)));
      return kFailure;
    }
  }

  /// What is printed of a file.
  struct Source {
    MXF::FileStructure structure;
    std::vector<Summary::Partition> partitions;
    MXF::PartitionChoice choice;
    Registers::FileDefinitions own;
    std::unique_ptr<PartitionMetadata> metadata;
    Missing missing;
  };

  Source read(const Path& file, const MXF::FileStructure& structure, const MXF::PartitionChoice& choice) const {
    Source source{structure, Summary::partitionsOf(structure), choice, {}, nullptr, {}};
    const auto partition = DictionaryOptions::partitionOf(file, choice, {}, salvage_.placeFor(source.missing));
    source.metadata = dictionary_.read(partition, &source.own);
    requireSomething(*source.metadata, source.missing);
    return source;
  }

  std::string summaryText(const Source& source) const {
    auto groups = groupsOf(Summary::summaryOf(*source.metadata));
    groups.push_back(fileGroup(source.structure, source.partitions, source.choice));
    if (source.own.isThere) groups.back().fields.push_back({"own dictionary", countsOf(source.own)});
    auto undecoded = undecodedGroup(*source.metadata);
    if (!undecoded.fields.empty()) groups.push_back(std::move(undecoded));
    return Tool::textOf(groups, terminalColumns(), wantsColor(color_));
  }

  static void addTo(JSON::Value& json, const Source& source) {
    const auto& structure = source.structure;
    if (!isOfPipe(structure)) json.add("size", structure.fileSize).add("end", structure.end);
    json.add("runIn", structure.runIn);
    json.add("partitions", jsonOf(source.partitions));
    const auto best = isOfPipe(structure) ? std::nullopt : MXF::bestPartition(structure);
    if (best) json.add("best", uint64{*best});
    json.add("partition", source.choice.text());
    addSummary(Summary::summaryOf(*source.metadata), json);
    json.add("counts", Tool::countsOf(*source.metadata));
    if (source.own.isThere) json.add("ownDictionary", definitionsOf(source.own));
    addMissing(source.missing, json);
  }

  std::string listText(const Source& source, const Definitions& definitions) const {
    const auto& structure = source.structure;
    const auto& metadata = *source.metadata;
    const Counts counts(metadata);
    std::string text;
    if (partitions_ || all_) text = describeFile(structure, definitions) + describePartitions(structure) + "\n";
    const bool isWhole = listsSets() || all_;
    const auto sets = isWhole ? listOfSets(metadata, {terminalColumns(), allSets_}) : list(counts.known);
    text += describeMetadata(metadata, counts, source.choice, sets);
    return listsSets() ? text : text + describeOwn(source.own);
  }

  std::vector<Path> files_;
  std::optional<MXF::PartitionChoice> partition_;
  SalvageOption salvage_;
  bool partitions_ = false;
  bool sets_ = false;
  bool allSets_ = false;
  bool all_ = false;
  bool isJSON_ = false;
  ColorChoice color_ = ColorChoice::kAuto;
  DictionaryOptions dictionary_;
};

}  // namespace

std::unique_ptr<Command> infoCommand(CLI::App& program) { return std::make_unique<InfoCommand>(program); }

}  // namespace Vantor::Tool
