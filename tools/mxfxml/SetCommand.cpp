#include <algorithm>
#include <exception>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "Command.h"
#include "Core/DataIO/File.h"
#include "Core/MXF/ReplacementSafety.h"
#include "Core/Metadata/SetPath.h"
#include "Core/Platform/Strings.h"
#include "DictionaryOptions.h"
#include "Edit/File.h"
#include "EditOptions.h"
#include "EditReport.h"
#include "ErrorText.h"
#include "GivenValues.h"
#include "OwnNames.h"
#include "PropertyPaths.h"
#include "StoppedChange.h"

namespace Vantor::Tool {

namespace {

/// What the user wants of one property: "Set.Property=VALUE", or "Set.Property" to remove it, or a value of a document.
struct Change : PropertyPath {
  explicit Change(const PropertyPath& path, std::shared_ptr<const GivenValue> givenValue = nullptr)
      : PropertyPath(path), given(std::move(givenValue)) {}

  bool isAssignment() const { return value || given != nullptr; }

  std::shared_ptr<const GivenValue> given;
};

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
            "{\"Set.Property\": value, ...}; -\nreads it from standard input")
        ->type_name("VALUES.json");
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
    addExamples({"set in.mxf 'Timecode[*].StartTimecode=10:00:00:00'",
                 "set in.mxf MaterialPackage.Name='Episode 3' -o out.mxf",
                 "set in.mxf 'TimelineTrack[TrackID=2].TrackName=A1' --dry-run",
                 "set in.mxf --remove Preface.Dictionary", "set in.mxf --from values.json"});
  }

  ExitCode run() const override {
    if (assignments_.empty() && removals_.empty() && !from_) {
      throw UsageError("Set.Property=VALUE, --remove or --from is required");
    }
    const auto changes = wanted();
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
    refuseUneditable();
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
  /// A change with a set that it is made in.
  struct Place {
    const Change* change;
    MetadataSet* set;
  };

  std::vector<Change> wanted() const {
    std::vector<Change> changes;
    for (const auto& text : assignments_) changes.emplace_back(parsePropertyPath(text, true));
    for (const auto& text : removals_) changes.emplace_back(parsePropertyPath(text, false));
    if (!from_) return changes;
    for (const auto& given : readGivenValues(*from_)) changes.emplace_back(given->path(), given);
    return changes;
  }

  /// Before anybody looks for the right spelling.
  void refuseUneditable() const {
    DataIO::File::FileDataSource source(input());
    const auto structure = MXF::readStructure(source);
    try {
      MXF::refuseUnsafe(source, structure);
    } catch (const Exceptions::ParseError& error) {
      throw CommandError(error.message() +
                         std::string("; such a file cannot be edited; mxfxml export, and mxfxml import -o of the "
                                     "edited document, make a file of the header metadata alone"));
    }
  }

  /// Finds the sets of all changes before it makes one, so that no change decides which sets another means. Reports
  /// every change that cannot be made.
  /// @return the number of these, if the user wants to keep going. @throws what the last one throws, otherwise.
  std::size_t edit(PartitionMetadata& metadata, const std::vector<Change>& changes) const {
    std::vector<std::exception_ptr> failures;
    const auto places = placesOf(metadata, changes, failures);
    requireGivenOnce(places);
    const Change* failed = nullptr;
    for (const auto& place : places) {
      if (place.change == failed && !options_.keepsGoing()) continue;  // one message will do
      if (!attempt(*place.change, failures, metadata, [&] { make(*place.change, *place.set); })) failed = place.change;
    }
    if (failures.empty()) checkGiven(places, failures, metadata);
    return report(failures);
  }

  /// A property may show by another what it means, as a timecode by its rate: therefore after all changes.
  void checkGiven(const std::vector<Place>& places, std::vector<std::exception_ptr>& failures,
                  const PartitionMetadata& metadata) const {
    for (const auto& place : places) {
      const auto* given = place.change->given.get();
      if (given != nullptr) attempt(*place.change, failures, metadata, [&] { given->requireAgreement(*place.set); });
    }
  }

  std::vector<Place> placesOf(const PartitionMetadata& metadata, const std::vector<Change>& changes,
                              std::vector<std::exception_ptr>& failures) const {
    std::vector<Place> places;
    for (const auto& change : changes) {
      attempt(change, failures, metadata, [&] {
        for (auto& set : find(metadata, change)) places.push_back({&change, &set});
      });
    }
    // It is read by the base in its set, which may change with it.
    std::stable_partition(places.begin(), places.end(), [](const Place& place) {
      const auto* attribute = attributeOf(place);
      return attribute == nullptr || !place.change->isAssignment() ||
             attribute->metaElement()->symbol() != "StartTimecode";
    });
    return places;
  }

  static const MetaMetadata::MetaAttribute* attributeOf(const Place& place) {
    const auto* definition = place.set->definition();
    return definition == nullptr ? nullptr : definition->findAttribute(place.change->property);
  }

  /// The second value would replace the first.
  static void requireGivenOnce(const std::vector<Place>& places) {
    std::map<std::pair<const MetadataSet*, const MetaMetadata::MetaAttribute*>, const Change*> given;
    for (const auto& place : places) {
      const auto* attribute = attributeOf(place);
      if (attribute == nullptr || given.emplace(std::pair(place.set, attribute), place.change).second) continue;
      throw UsageError(place.change->choice + " is given more than once");
    }
  }

  /// @return false when the action fails, which the failures keep.
  template <class Action>
  bool attempt(const Change& change, std::vector<std::exception_ptr>& failures, const PartitionMetadata& metadata,
               Action action) const {
    try {
      action();
      return true;
    } catch (const Exceptions::InvalidFormat& error) {
      const auto hint = hintOn(change, metadata);
      failures.push_back(hint.empty() ? std::current_exception()
                                      : std::make_exception_ptr(CommandError(error.message() + hint)));
    } catch (const Exceptions::BaseException&) {
      failures.push_back(std::current_exception());
    } catch (const CommandError&) {
      failures.push_back(std::current_exception());
    } catch (const OtherFileError&) {
      failures.push_back(std::current_exception());
    }
    return false;
  }

  std::string hintOn(const Change& change, const PartitionMetadata& metadata) const {
    if (dictionary_.usesOwn()) return "";
    try {
      return ownNameHint(*metadata.partitionDictionary().dictionary(), ownDictionary(), change.set, change.property);
    } catch (const Exceptions::InvalidFormat&) {
      return "";  // no path; the message is about that
    }
  }

  /// Null where the file defines nothing. Read for the first change that cannot be made, and kept for the others.
  const MetaMetadata::Dictionary* ownDictionary() const {
    const auto choice = partition_.value_or(MXF::PartitionChoice());
    if (!ownDictionary_) ownDictionary_ = dictionary_.tryLoadOwn(DictionaryOptions::partitionOf(input(), choice));
    return ownDictionary_->get();
  }

  std::size_t report(const std::vector<std::exception_ptr>& failures) const {
    for (const auto& failure : failures) {
      if (&failure == &failures.back() && !options_.keepsGoing()) std::rethrow_exception(failure);
      try {
        std::rethrow_exception(failure);
      } catch (...) {
        printMessage(currentExceptionText(input()));
      }
    }
    return failures.size();
  }

  void make(const Change& change, MetadataSet& set) const {
    if (change.given != nullptr) {
      change.given->assignTo(set);
    } else if (change.value) {
      set.set(change.property, Utils::stringToWstring(*change.value), TextFiles::kRead);
    } else if (!set.remove(change.property)) {
      printMessage(input().u8string() + ": the " + set.fullName() + " has no " + set.namesOf(change.property) +
                   " to remove");
    }
  }

  FoundSets find(const PartitionMetadata& metadata, const Change& change) const {
    if (!start_) return metadata.choose(change.set, change.property);
    auto& chosen = metadata.find(*start_);
    for (auto& set : metadata.findAll(change.set)) {
      if (&set == &chosen) return FoundSets({&set});
    }
    throw CommandError("the set '" + *start_ + "' is no " + change.set);
  }

  std::vector<std::string> assignments_;
  std::vector<std::string> removals_;
  std::optional<Path> from_;
  std::optional<std::string> start_;
  std::optional<Path> output_;
  std::optional<MXF::PartitionChoice> partition_;
  EditOptions options_;
  DictionaryOptions dictionary_;
  mutable std::optional<SharedPtr<const MetaMetadata::Dictionary>> ownDictionary_;
};

}  // namespace

std::unique_ptr<Command> setCommand(CLI::App& program) { return std::make_unique<SetCommand>(program); }

}  // namespace Vantor::Tool
