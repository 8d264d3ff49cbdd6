#include <exception>
#include <optional>
#include <vector>

#include "CommandLine/Command.h"
#include "CommandLine/DictionaryOptions.h"
#include "CommandLine/EditOptions.h"
#include "CommandLine/HelpText.h"
#include "CommandLine/LimitOptions.h"
#include "CommandLine/PropertyPaths.h"
#include "Core/Platform/Path.h"
#include "Editing/EditReport.h"
#include "Editing/GivenValues.h"
#include "Editing/SetEdit.h"
#include "Plan/PlanRun.h"
#include "Plan/PlanTable.h"
#include "Plan/SetPlan.h"
#include "Terminal/ErrorText.h"

namespace Vantor::Tool {

namespace {

class SetCommand final : public Command {
 public:
  explicit SetCommand(CLI::App& program)
      : Command(program, "set", "Change or remove properties in the header metadata of a file") {
    addInput("MXF file");
    auto* assigned =
        app()
            .add_option(
                kAssignmentArgument, assignments_,
                "The new value of a property. Of several sets of a name, Set[2]\nis the second one, Set[-1] the "
                "last, Set[*] all, Set[TrackID=2]\nthose with this value; Set/Other is the one that Set leads\nto. "
                "An InstanceUID or its beginning is a set, too. See\nmxfxml info --sets. An empty VALUE is an empty "
                "text,\n@FILE the octets of a file, for byte strings. Values are\nwritten as in diff: 10:00:00:00, "
                "29.97, "
                "16:9, 2024-02-09,\n1.2.3.4 release, FullFrame, BT.709, [1, 2]")
            ->type_name("");
    hint(assigned, {CompletionHint::Kind::kAssignment});
    auto* removed = app()
                        .add_option("--remove", removals_, "Remove a property from a set; may be given several times")
                        ->type_name("Set.Property")
                        ->allow_extra_args(false);
    hint(removed, {CompletionHint::Kind::kPropertyPath});
    addFile(app(), "--from", from_,
            "Set the values in a JSON document: what mxfxml get --json\nprints of another file, or "
            "{\"Set.Property\": value, ...}; -\nreads it from standard input",
            Dash::kInput)
        ->type_name("VALUES.json");
    auto* start = app()
                      .add_option("--start", start_,
                                  "Of several sets with one name, edit this one, such as that\nwith an InstanceUID")
                      ->type_name("ID");
    hint(start, {CompletionHint::Kind::kSetPath});
    addFile(app(), "-o,--output", output_, "Write a copy to this file instead of changing the file")
        ->type_name("OUTPUT.mxf");
    addPartition(
        app(), partition_,
        "header, footer, best or a number: change this partition only.\nBy default, the header partition and all "
        "that repeat its\nmetadata are changed");
    plan_.add(app(), "file,path,value, and action for set or remove",
              {"INPUT", kAssignmentArgument, "--remove", "--from", "--start"});
    app().get_option("INPUT")->required(false);
    options_.add(app());
    dictionary_.addDictionary(app());
    dictionary_.addOwnDictionary(app());
    addLimits(app());
    addExamples(
        {"set in.mxf 'Timecode[*].StartTimecode=10:00:00:00'", "set in.mxf MaterialPackage.Name='Episode 3' -o out.mxf",
         "set in.mxf 'TimelineTrack[TrackID=2].TrackName=A1' --dry-run", "set in.mxf --remove Preface.Dictionary",
         "set in.mxf --from values.json", "set --plan titles.csv --report done.csv"});
  }

  ExitCode run() const override {
    if (output_ && options_.isDryRun()) throw UsageError("--dry-run writes no output");
    options_.requireFor(output_.has_value());
    if (plan_.isGiven()) return editFiles();
    if (input().empty()) throw UsageError("INPUT is required");
    if (assignments_.empty() && removals_.empty() && !from_) {
      throw UsageError("Set.Property=VALUE, --remove or --from is required");
    }
    const auto changes = wanted();
    if (output_) refuseSameFile(input(), *output_);
    const EditTarget target{input(), dictionary_, partition_, options_.isForced()};
    const auto file = openForSetting(target, !output_ && !options_.isDryRun());
    const auto failures = edit(target, file->metadata(), changes);
    if (options_.isDryRun()) {
      previewEdits(*file, input(), options_);
    } else {
      saveEdits(*file, input(), output_, options_);
    }
    return failures == 0 ? kSuccess : kFailure;
  }

 private:
  std::vector<Change> wanted() const {
    std::vector<Change> changes;
    for (const auto& text : assignments_) changes.emplace_back(parsePropertyPath(text, true));
    for (const auto& text : removals_) changes.emplace_back(parsePropertyPath(text, false));
    if (!from_) return changes;
    for (const auto& given : readGivenValues(*from_)) changes.emplace_back(given->path(), given);
    return changes;
  }

  ExitCode editFiles() const {
    auto files = readSetPlan(plan_.table());
    if (output_) writeCopies(files, *output_);
    return runPlan(plan_, files, SetPlan(dictionary_, partition_, options_), options_);
  }

  /// Reports every change that cannot be made.
  /// @return the number of these, if the user wants to keep going. @throws what the last one throws, otherwise.
  std::size_t edit(const EditTarget& target, PartitionMetadata& metadata, const std::vector<Change>& changes) const {
    const auto result = SetEdit(target, start_, options_.keepsGoing()).run(metadata, changes);
    for (const auto& remark : result.remarks) printMessage(Platform::pathToUTF8(input()) + ": " + remark);
    for (const auto& warning : result.warnings) printMessage(warning);
    const auto& failures = result.failures;
    for (const auto& failure : failures) {
      if (&failure == &failures.back() && !options_.keepsGoing()) std::rethrow_exception(failure.reason);
      try {
        std::rethrow_exception(failure.reason);
      } catch (...) {
        printMessage(currentExceptionText(input()));
      }
    }
    return failures.size();
  }

  std::vector<std::string> assignments_;
  std::vector<std::string> removals_;
  std::optional<Path> from_;
  std::optional<std::string> start_;
  std::optional<Path> output_;
  std::optional<MXF::PartitionChoice> partition_;
  EditOptions options_;
  PlanOptions plan_;
  DictionaryOptions dictionary_;
};

}  // namespace

std::unique_ptr<Command> setCommand(CLI::App& program) { return std::make_unique<SetCommand>(program); }

}  // namespace Vantor::Tool
