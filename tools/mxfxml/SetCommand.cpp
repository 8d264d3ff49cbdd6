#include <algorithm>
#include <optional>
#include <set>
#include <vector>

#include "Command.h"
#include "Core/Metadata/SetPath.h"
#include "Core/Platform/Strings.h"
#include "DictionaryOptions.h"
#include "Edit/File.h"
#include "EditOptions.h"
#include "EditReport.h"
#include "ErrorText.h"
#include "StoppedChange.h"

namespace Vantor::Tool {

namespace {

/// What the user wants of one property: "Set.Property=VALUE", or "Set.Property" to remove it.
using Change = PropertyPath;

/// @throws UsageError naming the text when it has another shape.
Change parseChange(const std::string& text, bool hasValue) {
  const auto valid = Utils::wstringToString(Utils::stringToWstring(text));
  if (valid != text) throw UsageError("'" + valid + "' is no text in UTF-8");
  Change change(text);
  if (change.set.empty() || change.property.empty() || hasValue != change.value.has_value()) {
    const std::string value = hasValue ? "=VALUE" : "";
    throw UsageError("'" + text + "' is no " + (hasValue ? "assignment" : "property") + "; write Set.Property" + value +
                     ", or Set[2].Property" + value + " for the second set of a name");
  }
  return change;
}

class SetCommand final : public Command {
 public:
  explicit SetCommand(CLI::App& program)
      : Command(program, "set", "Change or remove properties in the header metadata of a file") {
    addInput("MXF file");
    auto* assigned =
        app()
            .add_option(
                "Set.Property=VALUE", assignments_,
                "The new value of a property. Of several sets of a name, Set[2]\nis the second one, Set[-1] the "
                "last, Set[*] all, Set[TrackID=2]\nthose with this value; Set/Other is the one that Set leads\nto. "
                "An InstanceUID or its beginning is a set, too. See\nmxfxml info --sets. An empty VALUE is an empty "
                "text,\n@FILE the bytes of a file. Values are written as in diff:\n10:00:00:00, 29.97, 16:9, "
                "2024-02-09, "
                "1.2.3.4 release, FullFrame,\nBT.709, [1, 2]")
            ->type_name("");
    hint(assigned, {CompletionHint::Kind::kAssignment});
    auto* removed = app()
                        .add_option("--remove", removals_, "Remove a property from a set; may be given several times")
                        ->type_name("Set.Property")
                        ->allow_extra_args(false);
    hint(removed, {CompletionHint::Kind::kPropertyPath});
    auto* start = app()
                      .add_option("--start", start_,
                                  "Of several sets with one name, edit this one, such as that\nwith an InstanceUID")
                      ->type_name("ID");
    hint(start, {CompletionHint::Kind::kSetPath});
    addFile(app(), "-o,--output", output_, "Write a copy to this file instead of changing the file")
        ->type_name("OUTPUT.mxf");
    addPartition(app(), partition_,
                 "header, footer or a number: change this partition only.\nBy default, the header partition and all "
                 "that repeat its\nmetadata are changed");
    options_.add(app());
    dictionary_.addDictionary(app());
    dictionary_.addOwnDictionary(app());
    addExamples(
        {"set in.mxf 'Timecode[*].StartTimecode=10:00:00:00'", "set in.mxf MaterialPackage.Name='Episode 3' -o out.mxf",
         "set in.mxf 'TimelineTrack[TrackID=2].TrackName=A1' --dry-run", "set in.mxf --remove Preface.Dictionary"});
  }

  ExitCode run() const override {
    if (assignments_.empty() && removals_.empty()) throw UsageError("Set.Property=VALUE or --remove is required");
    std::vector<Change> changes;
    for (const auto& text : assignments_) changes.push_back(parseChange(text, true));
    for (const auto& text : removals_) changes.push_back(parseChange(text, false));
    // It is read by the base in its set, which may change with it.
    std::stable_partition(changes.begin(), changes.end(),
                          [](const Change& change) { return !change.value || change.property != "StartTimecode"; });
    if (output_ && options_.isDryRun()) throw UsageError("--dry-run writes no output");
    if (output_ && options_.keepsUndo()) throw UsageError("--keep-undo is for a change in place, not for -o");
    if (output_) refuseSameFile(input(), *output_);
    const auto dictionary = dictionary_.load();
    if (output_ || options_.isDryRun()) {
      refuseStoppedChange(input());
    } else {
      undoStoppedChange(input());
    }
    const auto own = DictionaryOptions::partitionOf(input(), partition_.value_or(MXF::PartitionChoice()));
    Edit::File file(input(), dictionary_.usesOwn() ? dictionary_.loadFor(own) : dictionary, partition_);
    const auto failures = edit(file.metadata(), changes);
    if (options_.isDryRun()) {
      previewEdits(file, input(), options_);
    } else {
      saveEdits(file, input(), output_, options_);
    }
    return failures == 0 ? kSuccess : kFailure;
  }

 private:
  /// @return the number of changes that cannot be made, each of which is printed.
  std::size_t edit(PartitionMetadata& metadata, const std::vector<Change>& changes) const {
    std::set<std::pair<const MetadataSet*, const MetaMetadata::MetaAttribute*>> given;
    std::size_t failures = 0;
    for (const auto& change : changes) {
      auto sets = FoundSets({});
      failures += attempt([&] { sets = find(metadata, change.set); });
      for (auto& set : sets) {
        failures += attempt([&] {
          const auto* definition = set.definition();
          const auto* attribute = definition == nullptr ? nullptr : definition->findAttribute(change.property);
          // The second value would replace the first.
          if (attribute != nullptr && !given.emplace(&set, attribute).second) {
            throw UsageError(change.choice + " is given more than once");
          }
          make(change, set);
        });
      }
    }
    return failures;
  }

  /// @return 1 when the action fails and the user wants to keep going, after a message.
  template <class Action>
  std::size_t attempt(Action action) const {
    try {
      action();
    } catch (const Exceptions::BaseException& error) {
      if (!options_.keepsGoing()) throw;
      printMessage(input().u8string() + ": " + error.message());
      return 1;
    }
    return 0;
  }

  void make(const Change& change, MetadataSet& set) const {
    if (change.value) {
      set.set(change.property, Utils::stringToWstring(*change.value), TextFiles::kRead);
    } else if (!set.remove(change.property)) {
      printMessage(input().u8string() + ": the " + set.fullName() + " has no " + set.namesOf(change.property) +
                   " to remove");
    }
  }

  FoundSets find(const PartitionMetadata& metadata, const std::string& name) const {
    if (!start_) return metadata.choose(name);
    auto& chosen = metadata.find(*start_);
    for (auto& set : metadata.findAll(name)) {
      if (&set == &chosen) return FoundSets({&set});
    }
    throw CommandError("the set '" + *start_ + "' is no " + name);
  }

  std::vector<std::string> assignments_;
  std::vector<std::string> removals_;
  std::optional<std::string> start_;
  std::optional<Path> output_;
  std::optional<MXF::PartitionChoice> partition_;
  EditOptions options_;
  DictionaryOptions dictionary_;
};

}  // namespace

std::unique_ptr<Command> setCommand(CLI::App& program) { return std::make_unique<SetCommand>(program); }

}  // namespace Vantor::Tool
